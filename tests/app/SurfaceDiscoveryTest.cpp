#include "app/SurfaceDiscovery.h"

#include "app/SurfaceGroups.h"
#include "tests/support/TestStudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

using testing::ElementsAre;

std::vector<MidiDevice> Scan() {
    std::vector<MidiDevice> list(1);
    GetAvailableDevices(list);
    return list;
}

std::vector<MIDIUniqueID> FoundIDs() {
    std::vector<MIDIUniqueID> ids;
    for (const MidiDevice& device : Scan())
        ids.push_back(device.uniqueID);
    return ids;
}

std::string NameOf(const MidiDevice& device) {
    char name[kMidiEndpointNameSize] = {};
    GetMidiEndpointName(device, name);
    return name;
}

class SurfaceDiscovery : public testing::Test {
protected:
    MIDIDeviceRef AddMackieControl(const std::string& name = "Desk") {
        return fStudio.AddExternal(name, "Mackie", "Mackie Control");
    }

    void ConnectToList(MIDIEndpointRef endpoint, const std::vector<MIDIUniqueID>& ids) {
        fStudio.SetBytes(endpoint, "connUniqueID", ids.data(), ids.size() * sizeof(MIDIUniqueID));
    }

    TestStudio fStudio;
    MIDIDeviceRef fInterface = fStudio.AddInterface("Box", 4);
    MIDIEndpointRef fSource = fStudio.Source(fInterface, 1);
    MIDIEndpointRef fDestination = fStudio.Destination(fInterface, 1);
};

TEST_F(SurfaceDiscovery, TellsSurfacesByTheBeginningOfManufacturerAndModel) {
    struct Case {
        const char* manufacturer;
        const char* model;
        SInt32 type; ///< 0: no surface
    };
    const Case cases[] = {
        {"Mackie", "HUI", 16},
        {"Mackie", "Mackie Control", 20},
        {"Mackie", "Mackie Control Exp", 21},
        {"Mackie Designs", "HUI mkII", 16},
        {"Mackie", "Mackie Control Expander", 21},
        {"Mackie", "Mackie Control XT", 20},
        {"Radikal Technologies", "SAC-2K", 32},
        {"Radikal Technologies GmbH", "SAC-2K 2", 32},
        {"By Mackie", "HUI", 0},
        {"mackie", "HUI", 0},
        {"Mackie", "Hui", 0},
        {"Mackie", "A HUI", 0},
        {"Mackie", "SAC-2K", 0},
        {"Radikal", "SAC-2K", 0},
        {"Radikal Technologies", "Mackie Control", 0},
        {"LOUD Technologies, Inc.", "MCU Pro USB", 0},
        {"", "HUI", 0},
        {"Mackie", "", 0},
    };
    for (const Case& test : cases) {
        const MIDIDeviceRef device = fStudio.AddExternal("Surface", test.manufacturer, test.model);
        fStudio.Cable(fInterface, 1, device);
        const std::vector<MidiDevice> found = Scan();
        EXPECT_EQ(IsUniqueIDOurDevice(fStudio.ID(device)), test.type != 0);
        ASSERT_EQ(found.size(), test.type != 0 ? 1u : 0u)
            << test.manufacturer << ", " << test.model;
        if (test.type != 0) {
            EXPECT_EQ(found[0].surfaceType, test.type) << test.model;
            EXPECT_EQ(found[0].uniqueID, fStudio.ID(device));
            EXPECT_EQ(found[0].sourceEndpoint, fSource);
            EXPECT_EQ(found[0].destinationEndpoint, fDestination);
        }
    }
}

TEST_F(SurfaceDiscovery, TakesTheFirstPortOfAUSBUnitForTheSurface) {
    const MIDIDeviceRef unit =
        fStudio.AddInterface("MCU Pro USB", 4, "LOUD Technologies, Inc.", "MCU Pro USB v3.1");
    const std::vector<MidiDevice> found = Scan();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].uniqueID, fStudio.ID(unit));
    EXPECT_EQ(found[0].surfaceType, kSurfaceTypeMackieControl);
    EXPECT_EQ(found[0].sourceEndpoint, fStudio.Source(unit, 1));
    EXPECT_EQ(found[0].destinationEndpoint, fStudio.Destination(unit, 1));
    EXPECT_EQ(IsEndpointAVirtualMIDIPort(fStudio.Source(unit, 1)),
              fStudio.ID(fStudio.Source(unit, 1)));
    EXPECT_EQ(IsEndpointAVirtualMIDIPort(fStudio.Source(unit, 2)), 0);
    EXPECT_EQ(IsEndpointAVirtualMIDIPort(0), 0);
    EXPECT_EQ(IsEndpointAVirtualMIDIPort(12345), 0) << "no such endpoint";
}

TEST_F(SurfaceDiscovery, FindsSurfacesCabledToTheOtherPortsOfAUSBUnit) {
    const MIDIDeviceRef unit =
        fStudio.AddInterface("MCU Pro USB", 2, "LOUD Technologies, Inc.", "MCU Pro USB");
    const MIDIDeviceRef external = AddMackieControl();
    fStudio.Cable(unit, 2, external);
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(unit), fStudio.ID(external)));
}

TEST_F(SurfaceDiscovery, TakesNoOtherProductForAPortOfItsOwn) {
    const MIDIDeviceRef alphaTrack =
        fStudio.AddInterface("AlphaTrack", 1, "Frontier Design", "AlphaTrack");
    fStudio.SetText(fStudio.Port(alphaTrack, 1), "name", "AlphaTrack");
    fStudio.AddInterface("MCU", 1, "LOUD Technologies", "MCU Pro USB");
    fStudio.AddInterface("MCU", 1, "LOUD Technologies, Inc.", "MCU Pro");
    EXPECT_THAT(FoundIDs(), ElementsAre());
}

TEST_F(SurfaceDiscovery, DropsSurfacesThatAreSeenInOneDirectionOnly) {
    const MIDIDeviceRef heard = AddMackieControl();
    const MIDIDeviceRef spokenTo = AddMackieControl();
    const MIDIDeviceRef both = AddMackieControl();
    fStudio.SetNumber(fStudio.Source(fInterface, 1), "connUniqueID", fStudio.ID(heard));
    fStudio.SetNumber(fStudio.Destination(fInterface, 2), "connUniqueID", fStudio.ID(spokenTo));
    fStudio.Cable(fInterface, 3, both);
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(both)));
    EXPECT_EQ(fStudio.Number(heard, kGroupIDKey), std::nullopt) << "it was never completed";
}

TEST_F(SurfaceDiscovery, KeepsTheOrderInWhichTheSourcesAreMet) {
    const MIDIDeviceRef one = AddMackieControl();
    const MIDIDeviceRef two = AddMackieControl();
    const MIDIDeviceRef three = AddMackieControl();
    const auto connect = [&](int sourcePort, int destinationPort, MIDIDeviceRef device) {
        fStudio.SetNumber(fStudio.Source(fInterface, sourcePort), "connUniqueID",
                          fStudio.ID(device));
        fStudio.SetNumber(fStudio.Destination(fInterface, destinationPort), "connUniqueID",
                          fStudio.ID(device));
    };
    connect(2, 1, one);
    connect(3, 2, two);
    connect(1, 4, three);
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(three), fStudio.ID(one), fStudio.ID(two)));
}

TEST_F(SurfaceDiscovery, TakesTheFirstSurfaceOfAConnectionList) {
    const MIDIUniqueID other = fStudio.ID(fStudio.AddExternal("Synth", "Velt", "Synth"));
    const MIDIUniqueID first = fStudio.ID(AddMackieControl());
    const MIDIUniqueID second = fStudio.ID(AddMackieControl());
    ConnectToList(fSource, {other, 0, -1, first, second});
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), first);
    ConnectToList(fSource, {second, first});
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), second);
    ConnectToList(fSource, {other, fStudio.ID(fSource)});
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);
    fStudio.SetNumber(fSource, "connUniqueID", other);
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);
    fStudio.SetText(fSource, "connUniqueID", "nonsense");
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fDestination), 0) << "it is connected to nothing";
    EXPECT_EQ(IsDeviceAttachedToEndpoint(0), 0);
}

TEST_F(SurfaceDiscovery, PassesOverTheRestOfAListThatHoldsNoWholeID) {
    const MIDIUniqueID surface = fStudio.ID(AddMackieControl());
    char bytes[6] = {};
    std::memcpy(bytes, &surface, sizeof surface);
    fStudio.SetBytes(fSource, "connUniqueID", bytes, sizeof bytes);
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), surface);
    fStudio.SetBytes(fSource, "connUniqueID", bytes, 3);
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);
    fStudio.SetBytes(fSource, "connUniqueID", bytes, 0);
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);
}

TEST_F(SurfaceDiscovery, MeetsTheEndpointsOfAUnitUnderTheirDevice) {
    const MIDIDeviceRef surface = AddMackieControl();
    fStudio.SetNumber(fSource, "connUniqueID", fStudio.ID(fStudio.Source(surface, 1)));
    ConnectToList(fDestination, {7, fStudio.ID(fStudio.Destination(surface, 1))});
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(surface)));

    // An entity is no endpoint: what leads to it stays under its own ID and settings.
    const MIDIEntityRef port = fStudio.Port(surface, 1);
    fStudio.Cable(fInterface, 1, port);
    fStudio.SetNumber(surface, kGroupIDKey, 5);
    const std::vector<MidiDevice> found = Scan();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].uniqueID, fStudio.ID(port));
    EXPECT_EQ(found[0].groupID, 5) << "inherited from the device";
}

TEST_F(SurfaceDiscovery, LeavesARecordIncompleteWhoseDeviceHasNoModel) {
    const MIDIDeviceRef unit = fStudio.AddInterface("Unit", 1, "LOUD Technologies, Inc.", "");
    fStudio.SetText(fStudio.Port(unit, 1), "model", "MCU Pro USB");
    ASSERT_NE(IsEndpointAVirtualMIDIPort(fStudio.Source(unit, 1)), 0);
    EXPECT_THAT(FoundIDs(), ElementsAre());
    EXPECT_EQ(fStudio.Number(unit, kGroupPositionKey), std::nullopt);
}

TEST_F(SurfaceDiscovery, ReplacesOnlyTheEndpointOfACompleteRecord) {
    const MIDIDeviceRef surface = AddMackieControl();
    fStudio.Cable(fInterface, 1, surface);
    fStudio.Cable(fInterface, 3, surface);
    std::vector<MidiDevice> list;
    MaybeAddEndPointToDeviceList(list, fSource, true);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].surfaceType, 0);
    MaybeAddEndPointToDeviceList(list, fDestination, false);
    EXPECT_EQ(list[0].surfaceType, kSurfaceTypeMackieControl);
    EXPECT_EQ(list[0].groupPosition, fStudio.ID(surface));

    fStudio.SetNumber(surface, kGroupIDKey, 9);
    MaybeAddEndPointToDeviceList(list, fStudio.Destination(fInterface, 3), false);
    MaybeAddEndPointToDeviceList(list, fStudio.Source(fInterface, 2), true);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].sourceEndpoint, fSource);
    EXPECT_EQ(list[0].destinationEndpoint, fStudio.Destination(fInterface, 3));
    EXPECT_EQ(list[0].groupID, 0) << "the settings are not read again";
}

TEST_F(SurfaceDiscovery, StoresTheDefaultsOfNewSurfacesAndReadsThoseOfOthers) {
    const MIDIDeviceRef fresh = AddMackieControl();
    const MIDIDeviceRef known = AddMackieControl();
    fStudio.Cable(fInterface, 1, fresh);
    fStudio.Cable(fInterface, 2, known);
    fStudio.SetNumber(known, kGroupIDKey, 2);
    fStudio.SetNumber(known, kGroupPositionKey, -40);
    const std::vector<MidiDevice> found = Scan();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(fStudio.Number(fresh, kGroupPositionKey), fStudio.ID(fresh));
    EXPECT_EQ(fStudio.Number(fresh, kGroupIDKey), 0);
    EXPECT_EQ(found[1].groupID, 2);
    EXPECT_EQ(found[1].groupPosition, -40);
}

TEST_F(SurfaceDiscovery, TakesNamesThatAreNoTextForMissing) {
    const MIDIDeviceRef surface = AddMackieControl();
    fStudio.Cable(fInterface, 1, surface);
    fStudio.SetBytes(surface, "name", "Desk", 4);
    EXPECT_EQ(NameOf(Scan().at(0)), "");
    fStudio.SetNumber(surface, "model", 20);
    EXPECT_THAT(FoundIDs(), ElementsAre());
    fStudio.SetText(surface, "model", "HUI");
    fStudio.SetBytes(surface, "manufacturer", "Mackie", 6);
    EXPECT_THAT(FoundIDs(), ElementsAre());
}

TEST_F(SurfaceDiscovery, EndsOnListsThatAreLongAndLeadNowhere) {
    // All endpoints of a device inherit its list.
    constexpr std::size_t kIDsInAMebibyte = (std::size_t{1} << 20U) / sizeof(MIDIUniqueID);
    std::vector<MIDIUniqueID> ids(kIDsInAMebibyte, std::numeric_limits<MIDIUniqueID>::max());
    const MIDIDeviceRef box = fStudio.AddInterface("Big Box", 200);
    ids.back() = fStudio.ID(box);
    ConnectToList(box, ids);
    EXPECT_THAT(FoundIDs(), ElementsAre());

    const MIDIDeviceRef surface = AddMackieControl();
    ids.back() = fStudio.ID(surface);
    ConnectToList(box, ids);
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(surface)));
}

TEST_F(SurfaceDiscovery, NamesASurfaceByItsOwnPortOrByTheInterfaceBeforeIt) {
    fStudio.AddInterface("MCU Pro USB", 2, "LOUD Technologies, Inc.", "MCU Pro USB");
    fStudio.Cable(fInterface, 2, AddMackieControl("Größe"));
    const std::vector<MidiDevice> found = Scan();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(NameOf(found[0]), "Größe on Box output Port 2");
    EXPECT_EQ(NameOf(found[1]), "MCU Pro USB Port 1");
}

TEST_F(SurfaceDiscovery, CutsLongNamesAtACharacter) {
    std::string umlauts;
    for (int i = 0; i < 200; ++i)
        umlauts += "ä";
    const MIDIDeviceRef surface = AddMackieControl(umlauts);
    fStudio.Cable(fInterface, 1, surface);
    EXPECT_EQ(NameOf(Scan().at(0)), umlauts.substr(0, 254));

    fStudio.SetText(surface, "name", "x" + umlauts);
    EXPECT_EQ(NameOf(Scan().at(0)), "x" + umlauts.substr(0, 252) + " ");

    fStudio.SetText(surface, "name", umlauts.substr(0, 240) + "x");
    EXPECT_EQ(NameOf(Scan().at(0)), umlauts.substr(0, 240) + "x on Box outpu");
}

TEST_F(SurfaceDiscovery, LeavesTheBufferAloneWhenANamePartIsMissing) {
    const MIDIDeviceRef surface = AddMackieControl();
    const MIDIDeviceRef nameless = fStudio.AddInterface("", 1);
    fStudio.Cable(nameless, 1, surface);
    const MidiDevice found = Scan().at(0);
    MidiDevice noSurface = found;
    noSurface.uniqueID = 1;
    MidiDevice noPort = found;
    noPort.destinationEndpoint = 0;
    for (const MidiDevice& device : {found, noSurface, noPort}) {
        char name[kMidiEndpointNameSize] = "as it was";
        GetMidiEndpointName(device, name);
        EXPECT_STREQ(name, "as it was");
    }
}

} // namespace
