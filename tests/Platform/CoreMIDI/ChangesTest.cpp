#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <CoreMIDI/MIDIChanges.h>

#include <chrono>

namespace {

class ChangesTest : public MidiTest {
protected:
    const MIDIDeviceRef fDevice = AddInterface("Interface", 1);
};

TEST_F(ChangesTest, ComeTogetherOrNotAtAll) {
    EXPECT_EQ(KestrinMIDIEndChanges(), kMIDINotPermitted);
    for (const bool isAbandoned : {false, true}) {
        MIDIChanges outer;
        SetNumber(fDevice, "group", 1);
        const MIDIDeviceRef added = AddInterface("Second", 1);
        EXPECT_EQ(NameOf(added), "Second");
        {
            MIDIChanges inner;
            SetNumber(fDevice, "group", 2);
            if (isAbandoned)
                MIDIChanges();
            else
                EXPECT_EQ(MIDIObjectSetIntegerProperty(fDevice, kMIDIPropertyUniqueID, ID(added)),
                          kMIDIIDNotUnique);
            EXPECT_NE(MIDISetupRemoveDevice(fDevice), noErr) << "nothing follows a failure";
            EXPECT_NE(inner.End(), noErr);
        }
        EXPECT_EQ(outer.End(),
                  isAbandoned ? OSStatus(kKestrinMIDIErrAbandoned) : OSStatus(kMIDIIDNotUnique));
        EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
        EXPECT_EQ(Number(fDevice, "group"), std::nullopt);
    }
    MIDIChanges outer;
    EXPECT_EQ(MIDIChanges().End(), noErr);
    SetNumber(fDevice, "group", 3);
    EXPECT_EQ(QueryInteger(OpenFile().get(), "SELECT count(*) FROM properties WHERE value=3", -1),
              0);
}

TEST_F(ChangesTest, WaitOnceForALockThatStays) {
    const UnitFacts known{.serial = "1"};
    PlugIn(SequencerWith({known}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 2u);
    const ConnectionHolder other = OpenFile();
    PlugIn(SequencerWith({}));
    EXPECT_EQ(Number(fDevice, "group"), std::nullopt);
    ASSERT_EQ(Execute(other.get(), "BEGIN IMMEDIATE"), SQLITE_OK);
    const auto start = std::chrono::steady_clock::now();
    PlugIn(SequencerWith({{.serial = "1", .path = "dummy_hcd.7-1"}}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 2u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4))
        << "a known unit at another place waits for nobody";
    EXPECT_EQ(KestrinMIDIBeginChanges(), kKestrinMIDIErrLocked);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(MIDIObjectSetIntegerProperty(fDevice, CFSTR("group"), i), kKestrinMIDIErrLocked);
    PlugIn(SequencerWith({known, {.card = 1, .serial = "2"}}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 2u) << "the interface's and that of the known unit";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
    ASSERT_EQ(Execute(other.get(), "COMMIT"), SQLITE_OK);
    EXPECT_EQ(MIDIGetNumberOfSources(), 3u) << "with that of the unit that is new";
    SetNumber(fDevice, "group", 5);
    EXPECT_EQ(TextOf(KestrinMIDICopyStatusText(kKestrinMIDIErrLocked)),
              "Another program keeps the MIDI database locked.");
}

} // namespace
