#include "Platform/CoreFoundation/Text.h"
#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <CoreFoundation/CFHolder.h>

namespace {

class PropertiesTest : public MidiTest {
protected:
    const MIDIDeviceRef fDevice = AddInterface("Interface", 1);
    const MIDIEntityRef fEntity = Port(fDevice, 1);
};

TEST_F(PropertiesTest, ComeFromTheOwnerWhereTheObjectHasNone) {
    const MIDIEndpointRef source = Source(fDevice, 1);
    SetNumber(fDevice, "group", 7);
    EXPECT_EQ(Number(source, "group"), 7);
    SetNumber(source, "group", -8);
    EXPECT_EQ(Number(source, "group"), -8);
    EXPECT_EQ(Number(fEntity, "group"), 7);
    // Removing reaches the object's own value only.
    EXPECT_EQ(MIDIObjectRemoveProperty(source, CFSTR("group")), noErr);
    EXPECT_EQ(MIDIObjectRemoveProperty(source, CFSTR("group")), kMIDIUnknownProperty);
    EXPECT_EQ(Number(source, "group"), 7);
}

TEST_F(PropertiesTest, AreKeptExactlyAcrossARestart) {
    const UniChar units[] = {'a', 0, 0xD834, 0xDD1E, 0xFFFF};
    const CFHolder<CFStringRef> text(CFStringCreateWithCharacters(nullptr, units, 5));
    const std::string longest(1 << 20, 'x');
    const CFHolder<CFStringRef> tooLong(MakeString(longest + "x"));
    ASSERT_EQ(MIDIObjectSetStringProperty(fDevice, CFSTR("text"), text.Get()), noErr);
    SetText(fDevice, "", "");
    SetBytes(fDevice, "least", "\0\1\2", 3);
    EXPECT_EQ(IntegerOf(fDevice, CFSTR("least")), kMIDIWrongPropertyType);
    SetNumber(fDevice, "least", INT32_MIN);
    SetText(fDevice, "full", longest);
    EXPECT_EQ(MIDIObjectSetStringProperty(fDevice, CFSTR("full"), tooLong.Get()),
              kMIDINotPermitted);
    EXPECT_EQ(MIDIObjectSetIntegerProperty(fDevice, tooLong.Get(), 1), kMIDINotPermitted);
    MIDIRestart();
    EXPECT_EQ(StringOf(fDevice, CFSTR("text")), Utf8Of(text.Get()));
    EXPECT_EQ(StringOf(fDevice, CFSTR("")), "");
    EXPECT_EQ(Number(fDevice, "least"), INT32_MIN) << "in place of a value of another type";
    EXPECT_EQ(StringOf(fDevice, CFSTR("full")), longest);
}

TEST_F(PropertiesTest, UniqueIDIsEachObjectsOwn) {
    EXPECT_NE(ID(fEntity), ID(fDevice));
    for (const MIDIUniqueID refused : {ID(fDevice), 0})
        EXPECT_EQ(MIDIObjectSetIntegerProperty(fEntity, kMIDIPropertyUniqueID, refused),
                  kMIDIIDNotUnique);
    EXPECT_EQ(MIDIObjectRemoveProperty(fEntity, kMIDIPropertyUniqueID), kMIDINotPermitted);
    SetNumber(fEntity, "uniqueID", -77);
    for (int round = 0; round < 2; ++round, MIDIRestart()) {
        MIDIObjectRef found = 0;
        EXPECT_EQ(MIDIObjectFindByUniqueID(-77, &found, nullptr), noErr);
        EXPECT_EQ(found, fEntity);
    }
}

} // namespace
