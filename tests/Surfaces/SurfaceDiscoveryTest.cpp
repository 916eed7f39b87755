#include "Surfaces/SurfaceDiscovery.h"

#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include "tests/support/TestStudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    MIDIDeviceRef AddMackieControl() {
        return fStudio.AddExternal("Desk", "Mackie", "Mackie Control");
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
    // Type 0: no surface.
    const std::tuple<const char*, const char*, SInt32> cases[] = {
        {"Mackie Designs", "HUI mkII", 16},
        {"Mackie", "Mackie Control Expander", 21},
        {"Mackie", "Mackie Control XT", 20},
        {"Radikal Technologies GmbH", "SAC-2K 2", 32},
        {"By Mackie", "HUI", 0},
        {"Mackie", "A HUI", 0},
        {"Radikal Technologies", "Mackie Control", 0},
        {"LOUD Technologies, Inc.", "MCU Pro USB", 0},
        {"", "HUI", 0},
        {"Mackie", "", 0}};
    for (const auto& [manufacturer, model, type] : cases) {
        const MIDIDeviceRef device = fStudio.AddExternal("Surface", manufacturer, model);
        fStudio.Cable(fInterface, 1, device);
        const std::vector<MidiDevice> found = Scan();
        ASSERT_EQ(found.size(), type != 0) << manufacturer << ", " << model;
        EXPECT_TRUE(found.empty() || found[0].surfaceType == type) << model;
    }
}

TEST_F(SurfaceDiscovery, TakesTheFirstPortOfAUSBUnitForTheSurfaceAndFollowsTheOthers) {
    const MIDIDeviceRef unit =
        fStudio.AddInterface("MCU Pro USB", 2, "LOUD Technologies, Inc.", "MCU Pro USB v3.1");
    const MIDIDeviceRef external = AddMackieControl();
    fStudio.Cable(unit, 2, external);
    fStudio.AddInterface("MCU", 1, "LOUD Technologies", "MCU Pro USB");
    fStudio.AddInterface("MCU", 1, "LOUD Technologies, Inc.", "MCU Pro");
    ASSERT_THAT(FoundIDs(), ElementsAre(fStudio.ID(unit), fStudio.ID(external)));
    const MidiDevice found = Scan()[0];
    EXPECT_EQ(found.surfaceType, kSurfaceTypeMackieControl);
    EXPECT_EQ(found.sourceEndpoint, fStudio.Source(unit, 1));
    EXPECT_EQ(found.destinationEndpoint, fStudio.Destination(unit, 1));
    EXPECT_EQ(NameOf(found), "MCU Pro USB Port 1");
    EXPECT_EQ(IsEndpointAVirtualMIDIPort(12345), 0) << "no such endpoint";
}

TEST_F(SurfaceDiscovery, KeepsTheOrderOfTheSourcesAndDropsWhatIsSeenInOneDirectionOnly) {
    const MIDIDeviceRef surfaces[] = {AddMackieControl(), AddMackieControl(), AddMackieControl(),
                                      AddMackieControl()};
    const auto connect = [&](MIDIEndpointRef endpoint, int surface) {
        fStudio.SetNumber(endpoint, "connUniqueID", fStudio.ID(surfaces[surface]));
    };
    connect(fStudio.Source(fInterface, 1), 0);
    connect(fStudio.Source(fInterface, 2), 2);
    connect(fStudio.Source(fInterface, 3), 1);
    connect(fStudio.Source(fInterface, 4), 1);
    connect(fStudio.Destination(fInterface, 1), 1);
    connect(fStudio.Destination(fInterface, 3), 2);
    connect(fStudio.Destination(fInterface, 4), 3);
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(surfaces[2]), fStudio.ID(surfaces[1])));
    EXPECT_EQ(Scan()[1].sourceEndpoint, fStudio.Source(fInterface, 4)) << "the last one";
    EXPECT_EQ(fStudio.Number(surfaces[0], kGroupIDKey), std::nullopt) << "it was never completed";
}

TEST_F(SurfaceDiscovery, TakesTheFirstSurfaceOfAConnectionListAndNoHalfAnID) {
    const MIDIUniqueID other = fStudio.ID(fStudio.AddExternal("Synth", "Velt", "Synth"));
    const MIDIUniqueID first = fStudio.ID(AddMackieControl());
    const MIDIUniqueID second = fStudio.ID(AddMackieControl());
    ConnectToList(fSource, {other, 0, -1, first, second});
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), first);
    ConnectToList(fSource, {other, fStudio.ID(fSource)});
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);
    fStudio.SetText(fSource, "connUniqueID", "nonsense");
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);

    const MIDIUniqueID ids[] = {first, second};
    fStudio.SetBytes(fSource, "connUniqueID", ids, 6);
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), first);
    fStudio.SetBytes(fSource, "connUniqueID", ids, 3);
    EXPECT_EQ(IsDeviceAttachedToEndpoint(fSource), 0);
}

TEST_F(SurfaceDiscovery, MeetsTheEndpointsOfAUnitUnderTheirDevice) {
    const MIDIDeviceRef surface = AddMackieControl();
    fStudio.SetNumber(fSource, "connUniqueID", fStudio.ID(fStudio.Source(surface, 1)));
    ConnectToList(fDestination, {7, fStudio.ID(fStudio.Destination(surface, 1))});
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(surface)));

    // An entity is no endpoint: what leads to it stays under its own ID.
    fStudio.Cable(fInterface, 1, fStudio.Port(surface, 1));
    EXPECT_THAT(FoundIDs(), ElementsAre(fStudio.ID(fStudio.Port(surface, 1))));
}

TEST_F(SurfaceDiscovery, EndsOnListsThatAreLongAndLeadNowhere) {
    // All endpoints of a device inherit its list.
    std::vector<MIDIUniqueID> ids(1000, std::numeric_limits<MIDIUniqueID>::max());
    const MIDIDeviceRef box = fStudio.AddInterface("Big Box", 200);
    for (const MIDIDeviceRef last : {box, AddMackieControl()}) {
        ids.back() = fStudio.ID(last);
        ConnectToList(box, ids);
        EXPECT_EQ(FoundIDs().size(), last != box);
    }
}

TEST_F(SurfaceDiscovery, NamesASurfaceByItsPortAndCutsLongNamesAtACharacter) {
    std::string umlauts;
    for (int i = 0; i < 200; ++i)
        umlauts += "ä";
    const MIDIDeviceRef surface = AddMackieControl();
    fStudio.Cable(fInterface, 1, surface);
    const std::pair<std::string, std::string> names[] = {
        {"Größe", "Größe on Box output Port 1"},
        {"שלום", "\u2068שלום\u2069 on Box output Port 1"},
        {"a\u202Eb", "\u2068a\u202Eb\u2069 on Box output Port 1"},
        {"\u2069\u202Eb\u2066", "\u2068\u202Eb\u2066\u2069\u2069 on Box output Port 1"},
        {umlauts, umlauts.substr(0, 254)},
        {"x" + umlauts, "x" + umlauts.substr(0, 252) + " "},
        {umlauts.substr(0, 240) + "x", umlauts.substr(0, 240) + "x on Box outpu"}};
    for (const auto& [name, shown] : names) {
        fStudio.SetText(surface, "name", name);
        EXPECT_EQ(NameOf(Scan().at(0)), shown);
    }
}

TEST_F(SurfaceDiscovery, NamesASurfaceOnAPortWithoutADeviceByBoth) {
    MidiDevice device;
    device.uniqueID = fStudio.ID(AddMackieControl());
    // Only the sequencer makes such ports.
    fStudio.RunSQL("INSERT INTO objects (id, type, position, unique_id) VALUES (99, 3, 0, 4002);"
                   "INSERT INTO properties VALUES (99, 'name', 'Network 1')");
    device.destinationEndpoint = 99;
    EXPECT_EQ(NameOf(device), "Desk on Network 1");
}

TEST_F(SurfaceDiscovery, LeavesTheBufferAloneWhenANamePartIsMissing) {
    const MIDIDeviceRef surface = AddMackieControl();
    const MIDIDeviceRef nameless = fStudio.AddInterface("", 1);
    fStudio.Cable(nameless, 1, surface);
    const MidiDevice found = Scan().at(0);
    MidiDevice noPort = found;
    noPort.destinationEndpoint = 0;
    for (const MidiDevice& device : {found, noPort, MidiDevice()}) {
        char name[kMidiEndpointNameSize] = "as it was";
        GetMidiEndpointName(device, name);
        EXPECT_STREQ(name, "as it was");
    }
}

} // namespace
