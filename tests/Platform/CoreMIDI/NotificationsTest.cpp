#include "Platform/CoreMIDI/Interface/ChangeWatch.h"
#include "tests/Platform/CoreMIDI/MidiTest.h"
#include "tests/support/FullDisk.h"

#include <CoreMIDI/MIDIReading.h>

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using Messages = std::vector<std::string>;

constexpr int kPatience = 20000; // milliseconds in which what must come has come on any machine

bool IsReadable(int descriptor, int milliseconds) {
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, milliseconds) == 1;
}

template <typename Value>
Value MedianOf(std::vector<Value> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// A client that notes what it is told: "added 7", "changed 7 name", "setup".
class NotificationsTest : public MidiTest {
protected:
    NotificationsTest() { EXPECT_EQ(MIDIClientCreate(nullptr, Note, this, &fClient), noErr); }
    ~NotificationsTest() override { MIDIClientDispose(fClient); }

    /// What is told until something of this kind comes, and at once with it.
    Messages HearUntil(const std::string& awaited) {
        fHeard.clear();
        while (fHeard.end() == std::find(fHeard.begin(), fHeard.end(), awaited) &&
               IsReadable(KestrinMIDIClientGetDescriptor(fClient), kPatience))
            EXPECT_EQ(KestrinMIDIClientDeliver(fClient), noErr);
        return fHeard;
    }

    void LookOftenerThanForNewsAlone() {
        for (int looks = 0; looks < 12; ++looks) {
            ASSERT_TRUE(IsReadable(KestrinMIDIClientGetDescriptor(fClient), kPatience));
            KestrinMIDIClientDeliver(fClient);
        }
    }

    static std::string Changed(MIDIObjectRef object, const char* key) {
        return "changed " + std::to_string(object) + " " + key;
    }

    MIDIClientRef fClient = 0;
    Messages fHeard;
    std::function<void()> fMeanwhile = [] {};

private:
    static void Note(const MIDINotification* message, void* test) {
        auto& self = *static_cast<NotificationsTest*>(test);
        const auto* moved = reinterpret_cast<const MIDIObjectAddRemoveNotification*>(message);
        const auto* changed =
            reinterpret_cast<const MIDIObjectPropertyChangeNotification*>(message);
        if (message->messageID == kMIDIMsgSetupChanged)
            self.fHeard.push_back("setup");
        else if (message->messageID == kMIDIMsgPropertyChanged)
            self.fHeard.push_back(
                Changed(changed->object,
                        TextOf(static_cast<CFStringRef>(CFRetain(changed->propertyName))).c_str()));
        else
            self.fHeard.push_back(
                (message->messageID == kMIDIMsgObjectAdded ? "added " : "removed ") +
                std::to_string(moved->child) + " of " + std::to_string(moved->parent));
        self.fMeanwhile();
    }
};

TEST_F(NotificationsTest, TellsOfWhatIsAddedChangedAndRemovedByAnyProcess) {
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    const std::string of = " of " + std::to_string(device);
    const std::string entity = std::to_string(Port(device, 1));
    const std::string source = std::to_string(Source(device, 1)) + " of " + entity;
    const std::string destination = std::to_string(Destination(device, 1)) + " of " + entity;
    EXPECT_THAT(HearUntil("setup"),
                ElementsAre("added " + std::to_string(device) + " of 0", "added " + entity + of,
                            "added " + source, "added " + destination, "setup"));
    ASSERT_EQ(End(Start([&] { SetText(device, "name", "Renamed"); })), 0);
    EXPECT_THAT(HearUntil("setup"), ElementsAre(Changed(device, "name"), "setup"));
    ASSERT_EQ(End(Start([&] { MIDIObjectRemoveProperty(device, kMIDIPropertyModel); })), 0);
    EXPECT_THAT(HearUntil("setup"), ElementsAre(Changed(device, "model"), "setup"));
    EXPECT_EQ(MIDISetupRemoveDevice(device), noErr);
    EXPECT_THAT(HearUntil("setup"),
                ElementsAre("removed " + destination, "removed " + source, "removed " + entity + of,
                            "removed " + std::to_string(device) + " of 0", "setup"));
}

TEST_F(NotificationsTest, TellsOfPluggingByWhatItChanges) {
    PlugIn(SequencerWith({{0, ""}}));
    ASSERT_EQ(HearUntil("setup").size(), 5u);
    const MIDIDeviceRef device = MIDIGetDevice(0);
    PlugIn(SequencerWith({}));
    EXPECT_THAT(HearUntil("setup"), Contains(Changed(device, "offline")));
    PlugIn(SequencerWith({{1, ""}}));
    HearUntil("setup");
    PlugIn(SequencerWith({{2, ""}}));
    EXPECT_THAT(HearUntil("setup"),
                ElementsAre(Changed(device, "kestrin.alsa.card"),
                            Changed(device, "kestrin.alsa.cardID"),
                            Changed(Port(device, 1), "kestrin.alsa.client"),
                            Changed(Port(device, 1), "kestrin.alsa.rawMIDI"), "setup"));
}

TEST_F(NotificationsTest, AStormEndsWithTheLastStateAndThenThereIsSilence) {
    constexpr SInt32 kChanges = 1000;
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    HearUntil("setup");
    const pid_t writer = Start([&] {
        for (SInt32 i = 1; i <= kChanges; ++i)
            SetNumber(device, "count", i);
    });
    SInt32 told = 0;
    while (told != kChanges && !HearUntil("setup").empty())
        told = Number(device, "count").value_or(0);
    EXPECT_EQ(told, kChanges);
    EXPECT_EQ(End(writer), 0);
    for (int looks = 0; IsReadable(KestrinMIDIClientGetDescriptor(fClient), 1500); ++looks) {
        KestrinMIDIClientDeliver(fClient);
        ASSERT_LT(looks, 30);
    }
    // Out of the silence, and noticed by another caller first.
    PlugIn(SequencerWith({{0, ""}}));
    ASSERT_EQ(MIDIGetNumberOfDevices(), 2u);
    EXPECT_THAT(HearUntil("setup"),
                Contains("added " + std::to_string(MIDIGetDevice(1)) + " of 0"));
}

TEST_F(NotificationsTest, WhatAReadingKeptFromBeingSeenIsToldAfterIt) {
    const MIDIDeviceRef gone = AddInterface("Gone", 1);
    const MIDIDeviceRef kept = AddInterface("Kept", 1);
    SetNumber(kept, "count", 1);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t other = Start([&] {
        char begun = 0;
        EXPECT_EQ(read(ends[0], &begun, 1), 1);
        SetNumber(kept, "count", 2);
        MIDISetupRemoveDevice(gone);
    });
    HearUntil("setup");
    fHeard.clear();
    {
        const MIDIReading reading;
        { const MIDIReading inside; }
        EXPECT_TRUE(write(ends[1], "", 1) == 1 && End(other) == 0);
        LookOftenerThanForNewsAlone();
        PlugIn(SequencerWith({{0, ""}}));
        KestrinMIDIClientDeliver(fClient);
        EXPECT_THAT(fHeard, ElementsAre());
        EXPECT_THAT(DeviceNames(), ElementsAre("Gone", "Kept"));
        SetNumber(kept, "count", 1); // it isn't any more
    }
    EXPECT_THAT(HearUntil("setup"), Contains("removed " + std::to_string(gone) + " of 0"));
    EXPECT_THAT(DeviceNames(), ElementsAre("Kept", "MCU Pro USB"));
    EXPECT_EQ(Number(kept, "count"), 1);
}

TEST_F(NotificationsTest, ADamagedDatabaseChangesNothingUntilOneTakesItsPlace) {
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    HearUntil("setup");
    MIDIRestart();
    const std::filesystem::path copy = fFile.string() + ".copy";
    std::filesystem::copy(fFile, copy);
    ASSERT_EQ(End(Start([&] {
                  Use(copy);
                  SetText(device, "name", "Of the copy");
                  MIDIRestart();
              })),
              0);
    std::ofstream(fFile) << "no database at all";
    EXPECT_THAT(HearUntil("setup"), ElementsAre("setup"));
    EXPECT_NE(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseReady);
    std::filesystem::rename(copy, fFile);
    EXPECT_THAT(HearUntil("setup"), ElementsAre(Changed(device, "name"), "setup"));
}

TEST_F(NotificationsTest, WhatAFullDiskKeptBackIsToldWhenThereIsRoom) {
    AddInterface("Interface", 1);
    HearUntil("setup");
    {
        const FullDisk disk(0);
        PlugIn(SequencerWith({{0, ""}}));
        LookOftenerThanForNewsAlone();
    }
    EXPECT_EQ(HearUntil("setup").size(), 5u);
}

TEST_F(NotificationsTest, TheProcedureMayDeliverAndDispose) {
    fMeanwhile = [this] {
        KestrinMIDIClientDeliver(fClient);
        MIDIClientDispose(fClient);
    };
    const int descriptor = KestrinMIDIClientGetDescriptor(fClient);
    AddInterface("Interface", 1);
    ASSERT_TRUE(IsReadable(descriptor, kPatience));
    while (fHeard.empty() && KestrinMIDIClientDeliver(fClient) == noErr) {
    }
    EXPECT_EQ(fHeard.size(), 1u);
    EXPECT_EQ(KestrinMIDIClientDeliver(fClient), kMIDIInvalidClient);
    EXPECT_EQ(MIDIClientDispose(fClient), kMIDIInvalidClient);
    EXPECT_EQ(KestrinMIDIClientGetDescriptor(fClient), -1);
}

TEST_F(NotificationsTest, WhatAnotherProcessStoresIsToldWithoutDelay) {
    using Clock = std::chrono::steady_clock; // one for all processes
    constexpr SInt32 kTimes = 21;
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    HearUntil("setup");
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t writer = Start([&] {
        for (SInt32 i = 1; i <= kTimes; ++i) {
            std::this_thread::sleep_for(20ms);
            SetNumber(device, "count", i);
            const Clock::time_point stored = Clock::now();
            EXPECT_EQ(write(ends[1], &stored, sizeof stored), static_cast<ssize_t>(sizeof stored));
        }
    });
    close(ends[1]);
    std::vector<Clock::time_point> stored(kTimes);
    std::vector<Clock::duration> byPipe(kTimes);
    std::thread listener([&] { // tells how fast this machine can be now
        for (std::size_t i = 0; i < kTimes; ++i) {
            EXPECT_EQ(read(ends[0], &stored[i], sizeof stored[i]),
                      static_cast<ssize_t>(sizeof stored[i]));
            byPipe[i] = Clock::now() - stored[i];
        }
    });
    std::vector<Clock::time_point> told;
    while (told.size() < kTimes && !HearUntil("setup").empty())
        told.resize(static_cast<std::size_t>(Number(device, "count").value_or(0)), Clock::now());
    listener.join();
    EXPECT_EQ(End(writer), 0);
    close(ends[0]);
    ASSERT_EQ(told.size(), stored.size());
    std::vector<Clock::duration> delays(kTimes);
    std::transform(told.begin(), told.end(), stored.begin(), delays.begin(), std::minus<>());
    EXPECT_LT(MedianOf(delays), 100ms + 10 * MedianOf(byPipe));
}

// What is written to the file can be seen somewhat later only, and nothing tells of that.
TEST(ChangeWatchTest, MakesOneLookAgainForAWhile) {
    const TemporaryFolder folder;
    ChangeWatch watch;
    for (int looks = 0; looks < 7; ++looks) {
        ASSERT_TRUE(IsReadable(watch.Number(), kPatience));
        watch.Rearm(folder / "objects.sqlite3");
        watch.LookedWith({.isUsable = true, .isAgain = false, .sequencer = -1});
    }
}

} // namespace
