#include "Surfaces/PlacedSurfaces.h"

#include <gtest/gtest.h>

namespace {

TEST(PlacedSurfaces, HaveNamesThatFitTheSequencer) {
    EXPECT_EQ(SurfaceClientName(12), "Surfaces 12");
    EXPECT_EQ(SurfacePortName(2, "Left Extender"), "2 Left Extender");
    std::string name(60, 'x');
    EXPECT_EQ(SurfacePortName(1, name + "\xc3\xa4").size(),
              62u); // the last character is left out whole
    EXPECT_EQ(SurfacePortName(1, name + "y").size(), 63u);
}

} // namespace
