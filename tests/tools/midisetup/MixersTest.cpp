#include "Surfaces/SurfaceGroups.h"

#include "tests/support/TestStudio.h"
#include "tools/midisetup/Ardour.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/UdevRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace MidiSetup;
using testing::HasSubstr;
using testing::Not;

std::string WhyNot(SInt32 group) {
    try {
        ArdourDeviceOf(group);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

TEST(ArdourDevice, IsAGroupWithOneMainUnitAndItsExtenders) {
    TestStudio studio;
    const auto add = [&](const std::string& model, SInt32 group, SInt32 position) {
        const MIDIDeviceRef device = studio.AddExternal(model, "Mackie", model);
        TestStudio::SetNumber(device, kGroupIDKey, group);
        TestStudio::SetNumber(device, kGroupPositionKey, position);
    };
    add("Mackie Control Exp", 0, 1);
    add("Mackie Control", 0, 2);
    add("Mackie Control Exp", 1, 0);
    add("Mackie Control", 2, 0);
    add("Mackie Control", 2, 1);
    add("Mackie Control", 3, 0);
    add("HUI", 3, 1);

    const ArdourDevice device = ArdourDeviceOf(0);
    EXPECT_EQ(device.units, 2);
    EXPECT_EQ(device.mainPlace, 2);
    EXPECT_EQ(ArdourPortEnding(device, 1), " ext 1");
    EXPECT_EQ(ArdourPortEnding(device, 2), "");
    EXPECT_THAT(ArdourDeviceText(device), HasSubstr("<Extenders value=\"1\"/>"));

    EXPECT_THAT(WhyNot(1), HasSubstr("group 1 has none"));
    EXPECT_THAT(WhyNot(2), HasSubstr("group 2 has 2"));
    EXPECT_THAT(WhyNot(3), HasSubstr("HUI"));
    EXPECT_THAT(WhyNot(4), HasSubstr("no surface has a place in group 4"));
}

TEST(UdevRules, TellCardsBySerialElseByPlaceAndHoldNothingOfANameThatARuleWouldTake) {
    const SInt32 mackie = 0x0a730006;
    const std::string rules = UdevRulesFor({{"Main \"x\"\n", mackie, "SN\"1*", "0000:00:14.0-1.4"},
                                            {"Twin", mackie, "SN002", "0000:00:14.0-2"},
                                            {"Twin", mackie, "SN002", "0000:00:14.0-3"},
                                            {"\xc3\xa4", mackie, "", "0000:00:14.0-4"}});
    EXPECT_THAT(rules, HasSubstr("ATTRS{idVendor}==\"0a73\", ATTRS{idProduct}==\"0006\", "
                                 "ATTRS{serial}==\"SN*1*\", ATTR{id}=\"Mainx\"\n"));
    EXPECT_THAT(rules, HasSubstr("DEVPATH==\"*/0000:00:14.0/usb*-2:*/sound/card*\", "
                                 "ATTR{id}=\"Twin\"\n"));
    EXPECT_THAT(rules, HasSubstr("ATTR{id}=\"Twin2\"\n"));
    EXPECT_THAT(rules, HasSubstr("ATTR{id}=\"Surface\"\n"));
    EXPECT_THAT(rules, Not(HasSubstr("SN002")));
    EXPECT_THAT(rules, Not(HasSubstr("\n\n")));
}

} // namespace
