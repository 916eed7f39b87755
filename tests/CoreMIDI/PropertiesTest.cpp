#include "Platform/CoreFoundation/CFHolder.h"
#include "Platform/CoreMIDI/Text.h"
#include "tests/CoreMIDI/MidiTest.h"

namespace {

using PropertiesTest = MidiTest;

TEST_F(PropertiesTest, ComeFromTheOwnerWhereTheObjectHasNone) {
    const MIDIDeviceRef device = AddInterface("Interface");
    const MIDIEntityRef entity = MIDIDeviceGetEntity(device, 0);
    const MIDIEndpointRef source = MIDIEntityGetSource(entity, 0);
    EXPECT_EQ(StringOf(source, kMIDIPropertyManufacturer), "Maker");
    EXPECT_EQ(NameOf(source), "Port 1");

    ASSERT_EQ(MIDIObjectSetIntegerProperty(device, CFSTR("group"), 7), noErr);
    EXPECT_EQ(IntegerOf(source, CFSTR("group")), 7);
    ASSERT_EQ(MIDIObjectSetIntegerProperty(source, CFSTR("group"), -8), noErr);
    EXPECT_EQ(IntegerOf(source, CFSTR("group")), -8);
    EXPECT_EQ(IntegerOf(entity, CFSTR("group")), 7);
    // Removing reaches the object's own value only.
    EXPECT_EQ(MIDIObjectRemoveProperty(source, CFSTR("group")), noErr);
    EXPECT_EQ(MIDIObjectRemoveProperty(source, CFSTR("group")), kMIDIUnknownProperty);
    EXPECT_EQ(IntegerOf(source, CFSTR("group")), 7);
}

TEST_F(PropertiesTest, TellAWrongTypeFromAbsence) {
    const MIDIDeviceRef device = AddInterface("Interface");
    const CFHolder<CFDataRef> data(MakeData(std::string_view("\0\1\2", 3)));
    ASSERT_EQ(MIDIObjectSetDataProperty(device, kMIDIPropertyConnectionUniqueID, data.Get()),
              noErr);
    CFDataRef read = nullptr;
    ASSERT_EQ(MIDIObjectGetDataProperty(device, kMIDIPropertyConnectionUniqueID, &read), noErr);
    EXPECT_EQ(BytesOf(CFHolder<CFDataRef>(read).Get()), std::string_view("\0\1\2", 3));
    EXPECT_EQ(IntegerOf(device, kMIDIPropertyConnectionUniqueID), kMIDIWrongPropertyType);
    EXPECT_EQ(IntegerOf(device, CFSTR("nothing")), kMIDIUnknownProperty);
    EXPECT_EQ(StringOf(device, kMIDIPropertyUniqueID), "(-10836)");
    EXPECT_EQ(IntegerOf(device + 1000, kMIDIPropertyName), kMIDIObjectNotFound);
    EXPECT_EQ(MIDIObjectSetIntegerProperty(0, CFSTR("group"), 1), kMIDIObjectNotFound);
    // Setting replaces a value of another type.
    ASSERT_EQ(MIDIObjectSetIntegerProperty(device, kMIDIPropertyConnectionUniqueID, 5), noErr);
    EXPECT_EQ(IntegerOf(device, kMIDIPropertyConnectionUniqueID), 5);
}

TEST_F(PropertiesTest, AreKeptExactlyAcrossARestart) {
    const MIDIDeviceRef device = AddInterface("Interface");
    const UniChar units[] = {'a', 0, 0xD834, 0xDD1E, 0xFFFF};
    const CFHolder<CFStringRef> text(CFStringCreateWithCharacters(nullptr, units, 5));
    const std::string longest(1 << 20, 'x');
    const CFHolder<CFStringRef> full(MakeString(longest));
    const CFHolder<CFStringRef> tooLong(MakeString(longest + "x"));
    ASSERT_EQ(MIDIObjectSetStringProperty(device, CFSTR("text"), text.Get()), noErr);
    ASSERT_EQ(MIDIObjectSetStringProperty(device, CFSTR(""), CFSTR("")), noErr);
    ASSERT_EQ(MIDIObjectSetIntegerProperty(device, CFSTR("least"), INT32_MIN), noErr);
    ASSERT_EQ(MIDIObjectSetStringProperty(device, CFSTR("full"), full.Get()), noErr);
    EXPECT_EQ(MIDIObjectSetStringProperty(device, CFSTR("full"), tooLong.Get()), kMIDINotPermitted);
    MIDIRestart();
    EXPECT_EQ(StringOf(device, CFSTR("text")), Utf8Of(text.Get()));
    EXPECT_EQ(StringOf(device, CFSTR("")), "");
    EXPECT_EQ(IntegerOf(device, CFSTR("least")), INT32_MIN);
    EXPECT_EQ(StringOf(device, CFSTR("full")), longest);
    std::vector<std::string> keys;
    for (ItemCount i = 0; i < KestrinMIDIObjectGetNumberOfProperties(device); ++i)
        keys.push_back(TextOf(KestrinMIDIObjectCopyPropertyKey(device, i)));
    EXPECT_EQ(keys, (std::vector<std::string>{"", "full", "least", "manufacturer", "model", "name",
                                              "text"}));
}

TEST_F(PropertiesTest, UniqueIDIsEachObjectsOwn) {
    const MIDIDeviceRef device = AddInterface("Interface");
    const MIDIEntityRef entity = MIDIDeviceGetEntity(device, 0);
    EXPECT_NE(UniqueIDOf(entity), UniqueIDOf(device));
    EXPECT_EQ(MIDIObjectSetIntegerProperty(entity, kMIDIPropertyUniqueID, UniqueIDOf(device)),
              kMIDIIDNotUnique);
    EXPECT_EQ(MIDIObjectSetIntegerProperty(entity, kMIDIPropertyUniqueID, 0), kMIDIIDNotUnique);
    EXPECT_EQ(MIDIObjectRemoveProperty(entity, kMIDIPropertyUniqueID), kMIDINotPermitted);
    ASSERT_EQ(MIDIObjectSetIntegerProperty(entity, kMIDIPropertyUniqueID, -77), noErr);
    for (int round = 0; round < 2; ++round, MIDIRestart()) {
        MIDIObjectRef found = 0;
        MIDIObjectType type = kMIDIObjectType_Other;
        EXPECT_EQ(MIDIObjectFindByUniqueID(-77, &found, &type), noErr);
        EXPECT_EQ(found, entity);
        EXPECT_EQ(type, kMIDIObjectType_Entity);
    }
}

} // namespace
