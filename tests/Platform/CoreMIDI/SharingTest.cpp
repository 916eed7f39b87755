#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace {

using SharingTest = MidiTest;

/// Numbers that one process tells another, which waits for them and hears 0 when there is nobody
/// left to tell any.
class Line {
public:
    Line() { EXPECT_EQ(pipe(fEnds), 0); }
    ~Line() {
        close(fEnds[0]);
        close(fEnds[1]);
    }
    void Tell(int number) { EXPECT_EQ(write(fEnds[1], &number, sizeof number), sizeof number); }
    int Hear() {
        int number = 0;
        return read(fEnds[0], &number, sizeof number) == sizeof number ? number : 0;
    }

private:
    int fEnds[2];
};

TEST_F(SharingTest, ReferencesAndChangesReachTheOtherProcessAtItsNextCall) {
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    Line toChild;
    Line toParent;
    const pid_t child = Start([&] {
        EXPECT_EQ(NameOf(device), "Interface");
        toParent.Tell(1);
        toChild.Hear();
        EXPECT_EQ(Number(device, "group"), 41);
        SetNumber(device, "group", 42);
        const MIDIDeviceRef added = AddInterface("Of the child", 1);
        EXPECT_EQ(MIDIGetNumberOfDevices(), 2u);
        toParent.Tell(static_cast<int>(added));
        toChild.Hear();
        EXPECT_EQ(NameOf(added), "(-10842)");
    });
    toParent.Hear();
    EXPECT_EQ(NameOf(device), "Interface");
    SetNumber(device, "group", 41);
    toChild.Tell(1);
    const auto added = static_cast<MIDIDeviceRef>(toParent.Hear());
    EXPECT_EQ(Number(device, "group"), 42);
    EXPECT_EQ(NameOf(added), "Of the child");
    EXPECT_EQ(MIDISetupRemoveDevice(added), noErr);
    toChild.Tell(1);
    EXPECT_EQ(End(child), 0);
}

TEST_F(SharingTest, EightThreadsChangeTheStudioOneAfterTheOther) {
    constexpr int kRounds = 20;
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    SetNumber(device, "count", 0);
    std::vector<std::thread> threads;
    for (int number = 1; number <= 8; ++number) {
        threads.emplace_back([&, number] {
            MIDIClientRef client = 0;
            MIDIClientCreate(nullptr, nullptr, nullptr, &client);
            for (int round = 1; round <= kRounds; ++round) {
                EXPECT_EQ(KestrinMIDIBeginChanges(), noErr);
                SetNumber(device, "count", *Number(device, "count") + 1);
                EXPECT_EQ(KestrinMIDIEndChanges(), noErr);
                SetNumber(device, ("of " + std::to_string(number)).c_str(), round);
                KestrinMIDIClientDeliver(client);
                if (number == round)
                    MIDIRestart();
            }
            MIDIClientDispose(client);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(Number(device, "count"), 8 * kRounds);
    for (int number = 1; number <= 8; ++number)
        EXPECT_EQ(Number(device, ("of " + std::to_string(number)).c_str()), kRounds);
}

TEST_F(SharingTest, AForkedChildLeavesTheDatabaseToItsParent) {
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    const pid_t child = fork();
    if (child == 0) {
        const bool isRefused =
            MIDIGetNumberOfDevices() == 0 &&
            MIDIObjectSetIntegerProperty(device, CFSTR("group"), 1) == kMIDIServerStartErr &&
            KestrinMIDIGetDatabaseState() == kKestrinMIDIDatabaseLocked;
        std::_Exit(isRefused ? 0 : 1);
    }
    EXPECT_EQ(End(child), 0);
    SetNumber(device, "group", 2);
}

TEST_F(SharingTest, AChildForkedDuringACallFindsTheServiceFree) {
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    std::atomic<bool> isEnding = false;
    std::thread thread([&] {
        for (int i = 0; !isEnding; ++i)
            SetNumber(device, "count", i);
    });
    for (int round = 0; round < 20; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(10);
            std::_Exit(MIDIGetNumberOfDevices() == 0 ? 0 : 1);
        }
        EXPECT_EQ(End(child), 0);
    }
    isEnding = true;
    thread.join();
}

} // namespace
