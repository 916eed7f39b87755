#include "tests/CoreMIDI/MidiTest.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace {

/// Two processes that take turns: a byte through a pipe is the word to go on.
class Turn {
public:
    Turn() { EXPECT_EQ(pipe(fEnds), 0); }
    ~Turn() {
        close(fEnds[0]);
        close(fEnds[1]);
    }
    void Give(char word = '.') { EXPECT_EQ(write(fEnds[1], &word, 1), 1); }
    char Take() {
        char word = 0;
        return read(fEnds[0], &word, 1) == 1 ? word : '\0';
    }

private:
    int fEnds[2];
};

class SharingTest : public MidiTest {
protected:
    /// Starts a process that has nothing open.
    template <typename Work>
    pid_t Start(Work work) {
        MIDIRestart();
        const pid_t child = fork();
        if (child == 0)
            _exit(work());
        return child;
    }
    static int End(pid_t child) {
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
};

TEST_F(SharingTest, ReferencesAndChangesReachTheOtherProcessAtItsNextCall) {
    const MIDIDeviceRef device = AddInterface("Interface");
    Turn toChild;
    Turn toParent;
    const pid_t child = Start([&] {
        int wrong = NameOf(device) == "Interface" ? 0 : 1;
        toParent.Give();
        toChild.Take();
        wrong += IntegerOf(device, CFSTR("group")) == 41 ? 0 : 2;
        wrong += MIDIObjectSetIntegerProperty(device, CFSTR("group"), 42) == noErr ? 0 : 4;
        const MIDIDeviceRef added = AddInterface("Of the child");
        wrong += MIDIGetNumberOfDevices() == 2 ? 0 : 8;
        toParent.Give(static_cast<char>(added));
        toChild.Take();
        wrong += NameOf(added) == "(-10842)" ? 0 : 16;
        return wrong;
    });
    toParent.Take();
    EXPECT_EQ(NameOf(device), "Interface");
    EXPECT_EQ(MIDIObjectSetIntegerProperty(device, CFSTR("group"), 41), noErr);
    toChild.Give();
    const auto added = static_cast<MIDIDeviceRef>(toParent.Take());
    EXPECT_EQ(IntegerOf(device, CFSTR("group")), 42);
    EXPECT_EQ(NameOf(added), "Of the child");
    EXPECT_EQ(MIDISetupRemoveDevice(added), noErr);
    toChild.Give();
    EXPECT_EQ(End(child), 0);
}

TEST_F(SharingTest, ManyProcessesMayOpenANewFileAndWriteAtOnce) {
    constexpr int kProcesses = 4;
    constexpr int kWrites = 50;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        children.push_back(Start([process] {
            const MIDIDeviceRef device = AddInterface(std::to_string(process).c_str());
            for (int i = 0; i <= kWrites; ++i) {
                if (MIDIObjectSetIntegerProperty(device, CFSTR("count"), i) != noErr)
                    return 1;
            }
            MIDIRestart();
            return IntegerOf(device, CFSTR("count")) == kWrites ? 0 : 2;
        }));
    }
    for (const pid_t child : children)
        EXPECT_EQ(End(child), 0);
    ASSERT_EQ(MIDIGetNumberOfDevices(), static_cast<ItemCount>(kProcesses));
    for (ItemCount i = 0; i < kProcesses; ++i)
        EXPECT_EQ(IntegerOf(MIDIGetDevice(i), CFSTR("count")), kWrites);
}

TEST_F(SharingTest, AKilledWriterLosesNothingThatWasConfirmed) {
    const MIDIDeviceRef device = AddInterface("Interface");
    int last = 0;
    for (int round = 0; round < 8; ++round) {
        int pipeEnds[2];
        ASSERT_EQ(pipe(pipeEnds), 0);
        const pid_t child = Start([&] {
            for (int i = last + 1;; ++i) {
                if (MIDIObjectSetIntegerProperty(device, CFSTR("count"), i) != noErr ||
                    write(pipeEnds[1], &i, sizeof i) != sizeof i)
                    return 1;
            }
        });
        close(pipeEnds[1]);
        for (int i = 0; i < 20 + 37 * round; ++i)
            ASSERT_EQ(read(pipeEnds[0], &last, sizeof last), static_cast<ssize_t>(sizeof last));
        // This process writes as well while the other one dies.
        EXPECT_EQ(MIDIObjectSetIntegerProperty(device, CFSTR("round"), round), noErr);
        kill(child, SIGKILL);
        while (read(pipeEnds[0], &last, sizeof last) == static_cast<ssize_t>(sizeof last)) {
        }
        close(pipeEnds[0]);
        EXPECT_EQ(End(child), -SIGKILL);
        // The one that was being written may have been confirmed or not.
        EXPECT_GE(IntegerOf(device, CFSTR("count")), last);
        EXPECT_LE(IntegerOf(device, CFSTR("count")), last + 1);
        EXPECT_EQ(IntegerOf(device, CFSTR("round")), round);
        EXPECT_EQ(KestrinMIDICopyDatabaseDamage(), nullptr);
        last = IntegerOf(device, CFSTR("count"));
    }
}

TEST_F(SharingTest, AForkedChildLeavesTheDatabaseToItsParent) {
    const MIDIDeviceRef device = AddInterface("Interface");
    const pid_t child = fork();
    if (child == 0) {
        const bool isRefused =
            MIDIGetNumberOfDevices() == 0 &&
            MIDIObjectSetIntegerProperty(device, CFSTR("group"), 1) == kMIDIServerStartErr &&
            KestrinMIDIGetDatabaseState() == kKestrinMIDIDatabaseLocked;
        std::_Exit(isRefused ? 0 : 1);
    }
    EXPECT_EQ(End(child), 0);
    EXPECT_EQ(MIDIObjectSetIntegerProperty(device, CFSTR("group"), 2), noErr);
}

} // namespace
