#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

using SharingTest = MidiTest;

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
                const SInt32 count = *Number(device, "count");
                std::this_thread::sleep_for(
                    std::chrono::milliseconds(1)); // for those who don't wait
                SetNumber(device, "count", count + 1);
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

TEST_F(SharingTest, AChildForkedDuringACallFindsTheServiceFreeAndTheDatabaseItsParents) {
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
            const bool isRefused =
                MIDIGetNumberOfDevices() == 0 &&
                MIDIObjectSetIntegerProperty(device, CFSTR("count"), 0) == kMIDIServerStartErr &&
                KestrinMIDIGetDatabaseState() == kKestrinMIDIDatabaseLocked;
            std::_Exit(isRefused ? 0 : 1);
        }
        EXPECT_EQ(End(child), 0);
    }
    isEnding = true;
    thread.join();
}

} // namespace
