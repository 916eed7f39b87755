#include "tests/CoreMIDI/MidiTest.h"

namespace {

using SetupTest = MidiTest;

MIDIObjectType TypeOf(MIDIObjectRef object) {
    MIDIObjectType type = kMIDIObjectType_Other;
    MIDIObjectFindByUniqueID(UniqueIDOf(object), nullptr, &type);
    return type;
}

TEST_F(SetupTest, OffersInterfacesAndKeepsExternalDevicesOutOfTheEndpoints) {
    const MIDIDeviceRef interface = AddInterface("Interface");
    const MIDIDeviceRef external = AddExternal("Surface");
    ASSERT_EQ(MIDIGetNumberOfDevices(), 1u);
    EXPECT_EQ(MIDIGetDevice(0), interface);
    ASSERT_EQ(MIDIGetNumberOfExternalDevices(), 1u);
    EXPECT_EQ(MIDIGetExternalDevice(0), external);
    ASSERT_EQ(MIDIGetNumberOfSources(), 1u);
    ASSERT_EQ(MIDIGetNumberOfDestinations(), 1u);
    const MIDIEntityRef entity = MIDIDeviceGetEntity(interface, 0);
    EXPECT_EQ(MIDIGetSource(0), MIDIEntityGetSource(entity, 0));
    EXPECT_EQ(MIDIGetDestination(0), MIDIEntityGetDestination(entity, 0));
    EXPECT_EQ(MIDIGetSource(1), 0u);
    EXPECT_EQ(IntegerOf(interface, kMIDIPropertyOffline), 0);

    const MIDIEntityRef externalEntity = MIDIDeviceGetEntity(external, 0);
    const MIDIEndpointRef externalSource = MIDIEntityGetSource(externalEntity, 0);
    EXPECT_EQ(TypeOf(external), 16);
    EXPECT_EQ(TypeOf(externalEntity), 17);
    EXPECT_EQ(TypeOf(externalSource), 18);
    EXPECT_EQ(TypeOf(MIDIEntityGetDestination(externalEntity, 0)), 19);
    MIDIEntityRef owner = 0;
    MIDIDeviceRef device = 0;
    EXPECT_EQ(MIDIEndpointGetEntity(externalSource, &owner), noErr);
    EXPECT_EQ(owner, externalEntity);
    EXPECT_EQ(MIDIEntityGetDevice(owner, &device), noErr);
    EXPECT_EQ(device, external);
    EXPECT_EQ(MIDIEndpointGetEntity(device, &owner), kMIDIObjectNotFound);
}

TEST_F(SetupTest, KeepsADeviceThatIsNotAddedOutOfTheLists) {
    MIDIDeviceRef device = 0;
    ASSERT_EQ(MIDIDeviceCreate(nullptr, CFSTR("New"), nullptr, nullptr, &device), noErr);
    ASSERT_EQ(MIDIDeviceAddEntity(device, CFSTR("Ports"), 0, 2, 3, nullptr), noErr);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
    EXPECT_EQ(MIDIGetNumberOfSources(), 0u);
    EXPECT_EQ(MIDISetupAddExternalDevice(device), kMIDIObjectNotFound);
    ASSERT_EQ(MIDISetupAddDevice(device), noErr);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
    EXPECT_EQ(MIDIGetNumberOfSources(), 2u);
    EXPECT_EQ(MIDIGetNumberOfDestinations(), 3u);
}

TEST_F(SetupTest, ForgetsWhatWasNeverAdded) {
    MIDIDeviceRef recent = 0;
    MIDIDeviceCreate(nullptr, CFSTR("Recent"), nullptr, nullptr, &recent);
    MIDIDeviceRef old = 0;
    MIDIDeviceCreate(nullptr, CFSTR("Old"), nullptr, nullptr, &old);
    RunSQL("UPDATE objects SET pending_since=pending_since-90000 WHERE id=" + std::to_string(old));
    EXPECT_EQ(NameOf(recent), "Recent");
    EXPECT_EQ(NameOf(old), "(-10842)");
}

TEST_F(SetupTest, RemovesADeviceWithAllThatItOwns) {
    const MIDIDeviceRef device = AddInterface("Interface");
    const MIDIDeviceRef external = AddExternal("Surface");
    MIDIEntityRef second = 0;
    MIDIDeviceAddEntity(device, CFSTR("Port 2"), 0, 1, 0, &second);
    const MIDIEndpointRef source = MIDIEntityGetSource(MIDIDeviceGetEntity(device, 0), 0);
    EXPECT_EQ(SourceNames(), (std::vector<std::string>{"Port 1", "Port 2"}));
    EXPECT_EQ(MIDIDeviceRemoveEntity(external, second), kMIDIObjectNotFound);
    EXPECT_EQ(MIDIDeviceRemoveEntity(device, second), noErr);
    EXPECT_EQ(MIDIDeviceGetNumberOfEntities(device), 1u);
    EXPECT_EQ(MIDISetupRemoveDevice(external), kMIDIObjectNotFound);
    EXPECT_EQ(MIDISetupRemoveDevice(device), noErr);
    EXPECT_EQ(MIDISetupRemoveExternalDevice(external), noErr);
    for (int round = 0; round < 2; ++round, MIDIRestart()) {
        EXPECT_EQ(NameOf(source), "(-10842)");
        EXPECT_EQ(MIDIGetNumberOfDevices() + MIDIGetNumberOfExternalDevices(), 0u);
    }
    EXPECT_EQ(QueryFile("SELECT (SELECT count(*) FROM objects)+(SELECT count(*) FROM properties)"),
              0);
    // A reference is not given out again.
    EXPECT_GT(AddInterface("Next"), source);
}

TEST_F(SetupTest, RefusesMoreEndpointsThanAnyUnitHas) {
    const MIDIDeviceRef device = AddInterface("Interface");
    EXPECT_EQ(MIDIDeviceAddEntity(device, CFSTR("Many"), 0, 257, 0, nullptr), kMIDINotPermitted);
    EXPECT_EQ(MIDIDeviceAddEntity(MIDIGetSource(0), CFSTR("Odd"), 0, 1, 1, nullptr),
              kMIDIObjectNotFound);
    EXPECT_EQ(MIDIDeviceGetNumberOfEntities(device), 1u);
}

TEST_F(SetupTest, CountsSourcesAndDestinationsOfAnEntityApart) {
    const MIDIDeviceRef device = AddInterface("Interface");
    MIDIEntityRef entity = 0;
    ASSERT_EQ(MIDIDeviceAddEntity(device, CFSTR("Ports"), 0, 2, 3, &entity), noErr);
    for (int round = 0; round < 2; ++round, MIDIRestart()) {
        ASSERT_EQ(MIDIEntityGetNumberOfSources(entity), 2u);
        ASSERT_EQ(MIDIEntityGetNumberOfDestinations(entity), 3u);
        EXPECT_EQ(TypeOf(MIDIEntityGetSource(entity, 1)), kMIDIObjectType_Source);
        EXPECT_EQ(TypeOf(MIDIEntityGetDestination(entity, 0)), kMIDIObjectType_Destination);
        EXPECT_LT(MIDIEntityGetDestination(entity, 1), MIDIEntityGetDestination(entity, 2));
        EXPECT_EQ(MIDIEntityGetSource(entity, 2), 0u);
        EXPECT_EQ(MIDIDeviceGetEntity(device, 1), entity);
        EXPECT_EQ(MIDIDeviceGetNumberOfEntities(entity), 0u);
    }
}

} // namespace
