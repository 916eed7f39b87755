#include "tests/Platform/CoreMIDI/MidiTest.h"

namespace {

class SetupTest : public MidiTest {
protected:
    static MIDIObjectType TypeOf(MIDIObjectRef object) {
        MIDIObjectType type = kMIDIObjectType_Other;
        MIDIObjectFindByUniqueID(ID(object), nullptr, &type);
        return type;
    }

    const MIDIDeviceRef fInterface = AddInterface("Interface", 1);
    const MIDIDeviceRef fExternal = AddExternal("Surface", "Mackie", "Mackie Control");
};

TEST_F(SetupTest, OffersInterfacesAndKeepsExternalDevicesOutOfTheEndpoints) {
    ASSERT_EQ(MIDIGetNumberOfDevices(), 1u);
    EXPECT_EQ(MIDIGetDevice(0), fInterface);
    EXPECT_EQ(MIDIGetExternalDevice(0), fExternal);
    ASSERT_EQ(MIDIGetNumberOfSources(), 1u);
    EXPECT_EQ(MIDIGetSource(0), Source(fInterface, 1));
    EXPECT_EQ(MIDIGetDestination(0), Destination(fInterface, 1));
    EXPECT_EQ(MIDIGetSource(1), 0u);

    const MIDIEntityRef entity = Port(fExternal, 1);
    EXPECT_EQ(TypeOf(fExternal), 16);
    EXPECT_EQ(TypeOf(entity), 17);
    EXPECT_EQ(TypeOf(Source(fExternal, 1)), 18);
    EXPECT_EQ(TypeOf(Destination(fExternal, 1)), 19);
    MIDIEntityRef owner = 0;
    EXPECT_EQ(MIDIEndpointGetEntity(Source(fExternal, 1), &owner), noErr);
    EXPECT_EQ(owner, entity);
    EXPECT_EQ(MIDIEndpointGetEntity(fExternal, &owner), kMIDIObjectNotFound);
}

TEST_F(SetupTest, KeepsADeviceThatIsNotAddedOutOfTheLists) {
    MIDIDeviceRef device = 0;
    MIDIEntityRef entity = 0;
    ASSERT_EQ(MIDIDeviceCreate(nullptr, CFSTR("New"), nullptr, nullptr, &device), noErr);
    EXPECT_EQ(MIDIDeviceAddEntity(device, CFSTR("Many"), 0, 257, 0, nullptr), kMIDINotPermitted);
    ASSERT_EQ(MIDIDeviceAddEntity(device, CFSTR("Ports"), 0, 2, 3, &entity), noErr);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
    EXPECT_EQ(MIDIGetNumberOfSources(), 1u);
    EXPECT_EQ(MIDISetupAddExternalDevice(device), kMIDIObjectNotFound);
    ASSERT_EQ(MIDISetupAddDevice(device), noErr);
    for (int round = 0; round < 2; ++round, MIDIRestart()) {
        EXPECT_EQ(MIDIGetNumberOfDevices(), 2u);
        EXPECT_EQ(MIDIGetNumberOfSources(), 3u);
        ASSERT_EQ(MIDIEntityGetNumberOfSources(entity), 2u);
        ASSERT_EQ(MIDIEntityGetNumberOfDestinations(entity), 3u);
        EXPECT_EQ(TypeOf(MIDIEntityGetSource(entity, 1)), kMIDIObjectType_Source);
        EXPECT_LT(MIDIEntityGetDestination(entity, 1), MIDIEntityGetDestination(entity, 2));
        EXPECT_EQ(MIDIEntityGetSource(entity, 2), 0u);
    }
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
    MIDIEntityRef second = 0;
    MIDIDeviceAddEntity(fInterface, CFSTR("Port 2"), 0, 1, 0, &second);
    const MIDIEndpointRef source = Source(fInterface, 1);
    EXPECT_EQ(MIDIDeviceRemoveEntity(fExternal, second), kMIDIObjectNotFound);
    EXPECT_EQ(MIDIDeviceRemoveEntity(fInterface, second), noErr);
    EXPECT_EQ(SourceNames(), std::vector<std::string>{"Port 1"});
    EXPECT_EQ(MIDISetupRemoveDevice(fExternal), kMIDIObjectNotFound);
    EXPECT_EQ(MIDISetupRemoveDevice(fInterface), noErr);
    EXPECT_EQ(MIDISetupRemoveExternalDevice(fExternal), noErr);
    for (int round = 0; round < 2; ++round, MIDIRestart()) {
        EXPECT_EQ(NameOf(source), "(-10842)");
        EXPECT_EQ(MIDIGetNumberOfDevices() + MIDIGetNumberOfExternalDevices(), 0u);
    }
    EXPECT_EQ(QueryInteger(OpenFile().get(), "SELECT count(*) FROM properties", -1), 0);
    // A reference is not given out again.
    EXPECT_GT(AddInterface("Next", 1), second);
}

} // namespace
