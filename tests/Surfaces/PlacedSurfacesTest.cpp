#include "Surfaces/PlacedSurfaces.h"

#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include "tests/support/TestStudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

void Place(MIDIDeviceRef surface, SInt32 group, SInt32 position) {
    TestStudio::SetNumber(surface, kGroupIDKey, group);
    TestStudio::SetNumber(surface, kGroupPositionKey, position);
}

TEST(PlacedSurfaces, AreThoseWithAChosenPlaceInTheOrderOfTheirPlacesPluggedInOrNot) {
    TestStudio studio;
    const MIDIDeviceRef box = studio.AddInterface("Box", 2);
    const MIDIDeviceRef main = studio.AddExternal("Main", "Mackie", "Mackie Control");
    const MIDIDeviceRef left = studio.AddExternal("Left", "Mackie", "Mackie Control Exp");
    const MIDIDeviceRef other = studio.AddExternal("Other", "Mackie", "HUI");
    const MIDIDeviceRef synth = studio.AddExternal("Synth", "Velt", "Synth");
    const MIDIDeviceRef fresh = studio.AddExternal("New", "Mackie", "Mackie Control");
    const MIDIDeviceRef direct =
        studio.AddInterface("Pro", 4, "LOUD Technologies, Inc.", "MCU Pro USB v3.1");
    Place(main, 2, 5);
    Place(left, 2, 0);
    Place(other, 1, 127);
    Place(synth, 2, 1);
    Place(direct, 2, 9);
    Place(fresh, 0, TestStudio::ID(fresh)); // as a scan leaves it
    studio.Cable(box, 2, main);

    std::vector<std::string> names;
    const std::vector<PlacedSurface> surfaces = PlacedSurfaces();
    for (const PlacedSurface& surface : surfaces)
        names.push_back(surface.name);
    ASSERT_THAT(names, ElementsAre("Other", "Left", "Main", "Pro"));
    EXPECT_EQ(surfaces[1].source, 0u); // no cable leads to it
    EXPECT_EQ(surfaces[1].type, kSurfaceTypeMackieControlExtender);
    EXPECT_EQ(surfaces[2].source, studio.Source(box, 2));
    EXPECT_EQ(surfaces[2].destination, studio.Destination(box, 2));
    EXPECT_EQ(surfaces[3].destination, studio.Destination(direct, 1));
    EXPECT_EQ(TestStudio::Number(fresh, kGroupPositionKey), TestStudio::ID(fresh));
}

TEST(PlacedSurfaces, HaveNamesThatFitTheSequencer) {
    EXPECT_EQ(SurfaceClientName(12), "Surfaces 12");
    EXPECT_EQ(SurfacePortName(2, "Left Extender"), "2 Left Extender");
    std::string name(60, 'x');
    EXPECT_EQ(SurfacePortName(1, name + "\xc3\xa4").size(),
              62u); // the last character is left out whole
    EXPECT_EQ(SurfacePortName(1, name + "y").size(), 63u);
}

} // namespace
