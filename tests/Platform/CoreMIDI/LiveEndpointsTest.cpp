#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <utility>

namespace {

using LiveEndpointsTest = MidiTest;
using Names = std::vector<std::string>;

const UnitFacts kFourPorts{.serial = "SN001",
                           .ports = {"MCU Pro USB MIDI 1", "MCU Pro USB MIDI 2",
                                     "MCU Pro USB MIDI 3", "MCU Pro USB MIDI 4"}};

TEST_F(LiveEndpointsTest, ACardIsADeviceWithItsPortsAsTheyComeUp) {
    UnitFacts comingUp = kFourPorts;
    comingUp.ports.clear();
    PlugIn(SequencerWith({comingUp}));
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
    comingUp.ports = {"MCU Pro USB MIDI 1"};
    PlugIn(SequencerWith({comingUp}));
    EXPECT_EQ(SourceNames(), Names{"Port 1"});
    PlugIn(SequencerWith({kFourPorts}));
    EXPECT_EQ(SourceNames(), (Names{"Port 1", "Port 2", "Port 3", "Port 4"}));
    EXPECT_EQ(MIDIGetNumberOfDestinations(), 4u);
    ASSERT_EQ(DeviceNames(), Names{"MCU Pro USB"});
    const MIDIEndpointRef source = MIDIGetSource(0);
    EXPECT_EQ(StringOf(source, kMIDIPropertyManufacturer), "LOUD Technologies, Inc.");
    EXPECT_EQ(StringOf(source, kMIDIPropertyModel), "MCU Pro USB");
    EXPECT_EQ(StringOf(source, kMIDIPropertyDriverOwner), "snd-usb-audio");
}

TEST_F(LiveEndpointsTest, AnUnpluggedDeviceIsKnownAndNotEnumerated) {
    PlugIn(SequencerWith({kFourPorts}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 4u);
    const MIDIDeviceRef device = MIDIGetDevice(0);
    const MIDIEndpointRef source = MIDIGetSource(2);
    SetNumber(device, "group", 3);
    EXPECT_EQ(MIDISetupRemoveDevice(device), kMIDINotPermitted);
    EXPECT_EQ(MIDIObjectSetIntegerProperty(source, kMIDIPropertyOffline, 1), kMIDINotPermitted);

    PlugIn(SequencerWith({}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 0u);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
    MIDIObjectRef found = 0;
    EXPECT_EQ(MIDIObjectFindByUniqueID(ID(source), &found, nullptr), noErr);
    EXPECT_EQ(found, source);
    EXPECT_EQ(IntegerOf(found, kMIDIPropertyOffline), 1);

    PlugIn(SequencerWith({kFourPorts}));
    MIDIRestart();
    ASSERT_EQ(MIDIGetNumberOfSources(), 4u);
    EXPECT_EQ(MIDIGetSource(2), source);
    EXPECT_EQ(Number(source, "group"), 3);

    PlugIn(SequencerWith({}));
    EXPECT_EQ(MIDISetupRemoveDevice(device), noErr);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
}

TEST_F(LiveEndpointsTest, WhereAUnitIsIsToldAndNotStored) {
    PlugIn(SequencerWith({kFourPorts}));
    const MIDIEndpointRef source = MIDIGetSource(2);
    EXPECT_EQ(StringOf(source, kKestrinMIDIPropertyRawMIDI), "hw:0,0,2");
    EXPECT_EQ(MIDIObjectSetIntegerProperty(source, kKestrinMIDIPropertyCard, 7), kMIDINotPermitted);
    PlugIn(SequencerWith({}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 0u);
    EXPECT_EQ(StringOf(source, kKestrinMIDIPropertyRawMIDI), "(-10835)");
}

TEST_F(LiveEndpointsTest, UnitsKeepTheirSettingsInAnyPlugOrder) {
    const struct {
        const char* serialOne;
        const char* serialTwo;
        ItemCount devicesAfterAMove;
    } cases[] = {{"SN001", "SN002", 2}, {"", "", 3}, {"same", "same", 3}};
    for (const auto& [serialOne, serialTwo, devicesAfterAMove] : cases) {
        Use(fFile.string() + serialOne);
        PlugIn(SequencerWith({{0, serialOne, "hub-1"}, {1, serialTwo, "hub-2"}}));
        ASSERT_EQ(DeviceNames(), (Names{"MCU Pro USB", "MCU Pro USB 2"}));
        const MIDIDeviceRef one = MIDIGetDevice(0);
        const MIDIDeviceRef two = MIDIGetDevice(1);
        EXPECT_EQ(StringOf(two, kMIDIPropertyModel), "MCU Pro USB");
        PlugIn(SequencerWith({}));
        ASSERT_EQ(MIDIGetNumberOfSources(), 0u);
        // In again in the other order: card numbers are swapped, places are not.
        PlugIn(SequencerWith({{0, serialTwo, "hub-2"}, {1, serialOne, "hub-1"}}));
        ASSERT_EQ(MIDIGetNumberOfSources(), 2u);
        EXPECT_EQ(MIDIGetNumberOfDevices(), 2u);
        EXPECT_EQ(IntegerOf(one, kMIDIPropertyOffline), 0);
        PlugIn(SequencerWith({{0, serialTwo, "hub-2"}}));
        ASSERT_EQ(MIDIGetNumberOfSources(), 1u);
        EXPECT_EQ(MIDIGetSource(0), Source(two, 1));
        // At a third place it is itself only where nothing else is like it.
        for (int round = 0; round < 2; ++round, MIDIRestart()) {
            PlugIn(SequencerWith({{0, serialTwo, "hub-3"}}));
            EXPECT_EQ(MIDIGetNumberOfSources(), 1u);
            EXPECT_EQ(MIDIGetNumberOfDevices(), devicesAfterAMove);
        }
    }
}

TEST_F(LiveEndpointsTest, NamesFollowTheUnitUnlessAPersonChangedThem) {
    UnitFacts other{.card = 1, .serial = "SN002"};
    PlugIn(SequencerWith({kFourPorts, other}));
    ASSERT_EQ(DeviceNames(), (Names{"MCU Pro USB", "MCU Pro USB 2"}));
    const MIDIDeviceRef device = MIDIGetDevice(0);
    SetText(device, "name", "Left hand");
    SetText(Port(device, 2), "name", "Mine");
    // New firmware and a new kernel: another product text, jack names, and one port less.
    UnitFacts updated = kFourPorts;
    updated.product = "MCU Pro USB v3.1 that the kernel cuts";
    updated.shortName = "MCU Pro USB v3.1";
    updated.ports = {"MCU Pro USB v3.1 Main", "MCU Pro USB v3.1 Aux", "MCU Pro USB v3.1 MIDI 3"};
    other.product = "MCU Pro USB v3.1";
    PlugIn(SequencerWith({updated, other}));
    EXPECT_EQ(SourceNames(), (Names{"Port 1 (Main)", "Mine", "Port 3", "Port 1"}));
    EXPECT_EQ(DeviceNames(), (Names{"Left hand", "MCU Pro USB v3.1"}));
    EXPECT_EQ(StringOf(device, kMIDIPropertyModel), updated.product);
}

TEST_F(LiveEndpointsTest, OddUnitsAreNamedFromWhatIsWhole) {
    UnitFacts nameless{.card = 1, .serial = "2", .product = "", .manufacturer = ""};
    nameless.shortName = "USB Device 0xa73:0x06";
    nameless.ports = {"USB Device 0xa73:0x06 MIDI 1"};
    SequencerSnapshot snapshot = SequencerWith({nameless});
    snapshot.cards.push_back(
        {2, "VirMIDI", "snd_virmidi", "snd_virmidi.0", std::nullopt, "VirMIDI"});
    for (const int i : {0, 1}) {
        const std::string name = "VirMIDI 2-" + std::to_string(i);
        snapshot.clients.push_back({24 + i, "Virtual Raw MIDI", true, 2, {{0, name, true, false}}});
    }
    PlugIn(snapshot);
    EXPECT_EQ(SourceNames(), (Names{"Port 1", "Port 1 (2-0)", "Port 2 (2-1)"}));
    EXPECT_EQ(MIDIGetNumberOfDestinations(), 1u);
    EXPECT_EQ(DeviceNames(), (Names{nameless.shortName, "VirMIDI"}));
    EXPECT_EQ(StringOf(MIDIGetDevice(0), kMIDIPropertyManufacturer), "(-10835)");
}

TEST_F(LiveEndpointsTest, WhatIsPluggedStaysSoWhenAnotherProcessWrites) {
    const ConnectionHolder other = OpenFile();
    PlugIn(SequencerWith({kFourPorts}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 4u);
    const MIDIDeviceRef device = MIDIGetDevice(0);
    ASSERT_EQ(Execute(other.get(), "INSERT INTO properties SELECT id,'group',7 FROM objects"),
              SQLITE_OK);
    EXPECT_EQ(Number(device, "group"), 7);
    EXPECT_EQ(MIDIGetNumberOfSources(), 4u);
}

TEST_F(LiveEndpointsTest, AUnitThatAnotherProcessMakesFirstIsMadeOnce) {
    const ConnectionHolder other = OpenFile();
    MIDIGetNumberOfDevices();
    PlugIn(SequencerWith({kFourPorts}));
    AtTheNextLook([&] {
        EXPECT_EQ(Execute(other.get(), "INSERT INTO objects VALUES(7,0,NULL,0,77,NULL);"
                                       "INSERT INTO hardware VALUES(7,'usb 0a73:0006','SN001',"
                                       "'elsewhere','LOUD Technologies, Inc.','MCU Pro USB')"),
                  SQLITE_OK);
    });
    EXPECT_EQ(MIDIGetNumberOfSources(), 4u);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
    EXPECT_EQ(ID(MIDIGetDevice(0)), 77);
}

} // namespace
