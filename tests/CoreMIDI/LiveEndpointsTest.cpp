#include "tests/CoreMIDI/MidiTest.h"

#include <utility>

namespace {

using LiveEndpointsTest = MidiTest;
using Names = std::vector<std::string>;

const UnitFacts kFourPorts{.serial = "SN001",
                           .ports = {"MCU Pro USB MIDI 1", "MCU Pro USB MIDI 2",
                                     "MCU Pro USB MIDI 3", "MCU Pro USB MIDI 4"}};

/// A unit like the others at another card number and place.
UnitFacts UnitAt(int card, const std::string& path, const std::string& serial = "") {
    UnitFacts unit;
    unit.card = card;
    unit.path = path;
    unit.serial = serial;
    return unit;
}

Names DeviceNames() {
    Names names;
    for (ItemCount i = 0; i < MIDIGetNumberOfDevices(); ++i)
        names.push_back(NameOf(MIDIGetDevice(i)));
    return names;
}

MIDIDeviceRef DeviceOf(MIDIEndpointRef endpoint) {
    MIDIEntityRef entity = 0;
    MIDIDeviceRef device = 0;
    MIDIEndpointGetEntity(endpoint, &entity);
    MIDIEntityGetDevice(entity, &device);
    return device;
}

TEST_F(LiveEndpointsTest, ACardIsADeviceWithItsPorts) {
    PlugIn(SequencerWith({kFourPorts}));
    EXPECT_EQ(SourceNames(), (Names{"Port 1", "Port 2", "Port 3", "Port 4"}));
    EXPECT_EQ(MIDIGetNumberOfDestinations(), 4u);
    ASSERT_EQ(DeviceNames(), Names{"MCU Pro USB"});
    const MIDIEndpointRef source = MIDIGetSource(0);
    EXPECT_EQ(StringOf(source, kMIDIPropertyManufacturer), "LOUD Technologies, Inc.");
    EXPECT_EQ(StringOf(source, kMIDIPropertyModel), "MCU Pro USB");
    EXPECT_EQ(StringOf(source, kMIDIPropertyDriverOwner), "snd-usb-audio");
    EXPECT_EQ(IntegerOf(source, kMIDIPropertyOffline), 0);
    EXPECT_EQ(KestrinMIDIGetSequencerState(), kKestrinMIDISequencerReady);
}

TEST_F(LiveEndpointsTest, AnUnpluggedDeviceIsKnownAndNotEnumerated) {
    PlugIn(SequencerWith({kFourPorts}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 4u);
    const MIDIEndpointRef source = MIDIGetSource(2);
    const MIDIUniqueID id = UniqueIDOf(source);
    ASSERT_EQ(MIDIObjectSetIntegerProperty(DeviceOf(source), CFSTR("group"), 3), noErr);
    EXPECT_EQ(MIDISetupRemoveDevice(DeviceOf(source)), kMIDINotPermitted);
    EXPECT_EQ(MIDIObjectSetIntegerProperty(source, kMIDIPropertyOffline, 1), kMIDINotPermitted);

    PlugIn(SequencerWith({}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 0u);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
    MIDIObjectRef found = 0;
    EXPECT_EQ(MIDIObjectFindByUniqueID(id, &found, nullptr), noErr);
    EXPECT_EQ(found, source);
    EXPECT_EQ(IntegerOf(found, kMIDIPropertyOffline), 1);

    PlugIn(SequencerWith({kFourPorts}));
    MIDIRestart();
    ASSERT_EQ(MIDIGetNumberOfSources(), 4u);
    EXPECT_EQ(MIDIGetSource(2), source);
    EXPECT_EQ(UniqueIDOf(source), id);
    EXPECT_EQ(IntegerOf(source, CFSTR("group")), 3);

    PlugIn(SequencerWith({}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 0u);
    EXPECT_EQ(MIDISetupRemoveDevice(DeviceOf(source)), noErr);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
}

TEST_F(LiveEndpointsTest, UnitsKeepTheirSettingsInAnyPlugOrder) {
    for (const auto& [serialOne, serialTwo] :
         {std::pair("SN001", "SN002"), std::pair("", ""), std::pair("same", "same")}) {
        Use(fFolder / ("file" + std::string(serialOne)));
        PlugIn(SequencerWith({UnitAt(0, "hub-1", serialOne), UnitAt(1, "hub-2", serialTwo)}));
        ASSERT_EQ(DeviceNames(), (Names{"MCU Pro USB", "MCU Pro USB 2"}));
        const MIDIDeviceRef one = MIDIGetDevice(0);
        const MIDIDeviceRef two = MIDIGetDevice(1);
        EXPECT_EQ(StringOf(two, kMIDIPropertyModel), "MCU Pro USB");
        PlugIn(SequencerWith({}));
        ASSERT_EQ(MIDIGetNumberOfSources(), 0u);
        // In again in the other order: card numbers are swapped, places are not.
        PlugIn(SequencerWith({UnitAt(0, "hub-2", serialTwo), UnitAt(1, "hub-1", serialOne)}));
        ASSERT_EQ(MIDIGetNumberOfSources(), 2u);
        EXPECT_EQ(MIDIGetNumberOfDevices(), 2u);
        EXPECT_EQ(IntegerOf(one, kMIDIPropertyOffline), 0);
        PlugIn(SequencerWith({UnitAt(0, "hub-2", serialTwo)}));
        ASSERT_EQ(MIDIGetNumberOfSources(), 1u);
        EXPECT_EQ(DeviceOf(MIDIGetSource(0)), two);
    }
}

TEST_F(LiveEndpointsTest, UnitsThatCannotBeToldApartAppearWhereTheyAre) {
    PlugIn(SequencerWith({UnitAt(0, "hub-1"), UnitAt(1, "hub-2")}));
    ASSERT_EQ(MIDIGetNumberOfDevices(), 2u);
    const auto moved = SequencerWith({UnitAt(0, "hub-3"), UnitAt(1, "hub-4")});
    for (int round = 0; round < 3; ++round, MIDIRestart()) {
        PlugIn(moved);
        EXPECT_EQ(MIDIGetNumberOfSources(), 2u);
        EXPECT_EQ(DeviceNames(),
                  (Names{"MCU Pro USB", "MCU Pro USB 2", "MCU Pro USB 3", "MCU Pro USB 4"}));
        EXPECT_EQ(IntegerOf(MIDIGetDevice(0), kMIDIPropertyOffline), 1);
    }
}

TEST_F(LiveEndpointsTest, NamesFollowTheUnitUnlessAPersonChangedThem) {
    PlugIn(SequencerWith({kFourPorts}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 4u);
    const MIDIDeviceRef device = MIDIGetDevice(0);
    MIDIObjectSetStringProperty(device, kMIDIPropertyName, CFSTR("Left hand"));
    MIDIObjectSetStringProperty(MIDIDeviceGetEntity(device, 1), kMIDIPropertyName, CFSTR("Mine"));
    // New firmware and a new kernel: another product text, jack names, and one port less.
    UnitFacts updated = kFourPorts;
    updated.product = updated.shortName = "MCU Pro USB v3.1";
    updated.ports = {"MCU Pro USB v3.1 Main", "MCU Pro USB v3.1 Aux", "MCU Pro USB v3.1 MIDI 3"};
    PlugIn(SequencerWith({updated}));
    EXPECT_EQ(SourceNames(), (Names{"Port 1 (Main)", "Mine", "Port 3"}));
    EXPECT_EQ(DeviceNames(), Names{"Left hand"});
    EXPECT_EQ(StringOf(device, kMIDIPropertyModel), "MCU Pro USB v3.1");
}

TEST_F(LiveEndpointsTest, OddUnitsAreNamedFromWhatIsWhole) {
    UnitFacts longName{.card = 0, .serial = "1", .shortName = "A Very Long Product Name That G"};
    longName.product = "A Very Long Product Name That Goes On And On";
    longName.ports = {longName.shortName, longName.shortName};
    UnitFacts nameless{.card = 1, .serial = "2", .product = "", .manufacturer = ""};
    nameless.shortName = "USB Device 0xa73:0x06";
    nameless.ports = {"USB Device 0xa73:0x06 MIDI 1"};
    SequencerSnapshot snapshot = SequencerWith({longName, nameless});
    snapshot.cards.push_back({2, "VirMIDI", "snd_virmidi", "snd_virmidi.0", std::nullopt});
    for (int i = 0; i < 2; ++i) {
        const std::string number = "2-" + std::to_string(i);
        snapshot.clients.push_back({24 + i,
                                    "Virtual Raw MIDI " + number,
                                    true,
                                    2,
                                    {{0, "VirMIDI " + number, true, false}}});
    }
    PlugIn(snapshot);
    EXPECT_EQ(SourceNames(), (Names{"Port 1", "Port 2", "Port 1", "Port 1 (2-0)", "Port 2 (2-1)"}));
    EXPECT_EQ(MIDIGetNumberOfDestinations(), 3u);
    EXPECT_EQ(DeviceNames(), (Names{longName.product, nameless.shortName, "VirMIDI"}));
    EXPECT_EQ(StringOf(MIDIGetDevice(1), kMIDIPropertyManufacturer), "(-10835)");
}

TEST_F(LiveEndpointsTest, ProgramsEndpointsHaveNoEntityAndAreKnownByTheirNames) {
    SequencerSnapshot snapshot = SequencerWith({});
    AddProgram(snapshot, 129, "Mixer", "Clock");
    AddProgram(snapshot, 130, "Mixer", "Clock");
    PlugIn(snapshot);
    ASSERT_EQ(SourceNames(), (Names{"Mixer Clock", "Mixer Clock"}));
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
    const MIDIEndpointRef source = MIDIGetSource(0);
    MIDIEntityRef entity = 0;
    EXPECT_EQ(MIDIEndpointGetEntity(source, &entity), kMIDIObjectNotFound);
    snapshot = SequencerWith({});
    AddProgram(snapshot, 140, "Mixer", "Clock");
    PlugIn(snapshot);
    ASSERT_EQ(MIDIGetNumberOfSources(), 1u);
    EXPECT_EQ(MIDIGetSource(0), source);
    EXPECT_EQ(KestrinMIDIGetNumberOfVirtualEndpoints(), 4u);
}

TEST_F(LiveEndpointsTest, AUnitThatIsStillComingUpGetsItsPortsLater) {
    UnitFacts comingUp = kFourPorts;
    comingUp.ports.clear();
    PlugIn(SequencerWith({comingUp}));
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
    comingUp.ports = {"MCU Pro USB MIDI 1"};
    PlugIn(SequencerWith({comingUp}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 1u);
    PlugIn(SequencerWith({kFourPorts}));
    EXPECT_EQ(SourceNames(), (Names{"Port 1", "Port 2", "Port 3", "Port 4"}));
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
}

TEST_F(LiveEndpointsTest, TwoProcessesThatMeetANewUnitMakeOneDevice) {
    MIDIGetNumberOfDevices();
    PlugIn(SequencerWith({kFourPorts}));
    ASSERT_EQ(InChild([] { return static_cast<int>(MIDIGetNumberOfSources()); }), 4);
    EXPECT_EQ(MIDIGetNumberOfSources(), 4u);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
}

} // namespace
