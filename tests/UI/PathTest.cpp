#include "UI/Path.h"

#include "Platform/UI/CGBitmapContext.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using namespace Kestrin;

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

TEST(Path, DropsPointsOnTheSameWholePosition) {
    Path path;
    path.CreateSubpath(10, 10);
    path.AddLine(10.4F, 10.4F);
    EXPECT_EQ(path.GetBounds(), (Rect{10, 10, 0, 0}));
    path.AddLine(10.6F, 10);
    EXPECT_NEAR(path.GetBounds().width, 0.6, 1e-4);
    path.AddLine(11.4F, 10.4F);
    EXPECT_NEAR(path.GetBounds().width, 0.6, 1e-4);

    // Rounding cuts toward zero: -0.9 and 0.4 are the same position, -1.6 is another.
    Path negative;
    negative.CreateSubpath(0.4F, 0);
    negative.AddLine(-0.9F, 0);
    EXPECT_FLOAT_EQ(negative.GetBounds().width, 0);
    negative.AddLine(-1.6F, 0);
    EXPECT_FLOAT_EQ(negative.GetBounds().width, 2);
}

TEST(Path, DropsWhatIsNotANumberAndKeepsTheLastPoint) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    Path path;
    path.CreateSubpath(5, 5);
    path.AddLine(kNaN, 9);
    path.AddLine(9, kNaN);
    path.AddLine(std::numeric_limits<float>::infinity(), 5);
    path.AddArc(kNaN, {5, 5}, 0, 1);
    EXPECT_EQ(path.GetBounds(), (Rect{5, 5, 0, 0}));
    path.AddLine(7, 5);
    EXPECT_EQ(path.GetBounds(), (Rect{5, 5, 2, 0}));
}

TEST(Path, HasNoBoundsWithoutPoints) {
    Path path;
    path.AddLine(20, 20);
    path.CloseSubpath();
    EXPECT_EQ(path.GetBounds(), Rect());
}

TEST(Path, ArcsRunClockwiseExactlyFromTheLargerAngle) {
    Path rising;
    rising.AddArc(10, {0, 0}, 0, kPi / 2);
    EXPECT_NEAR(rising.GetBounds().x, 0, 1e-4);
    EXPECT_NEAR(rising.GetBounds().height, 10, 1e-4);

    Path falling;
    falling.AddArc(10, {0, 0}, kPi / 2, -kPi / 2);
    EXPECT_NEAR(falling.GetBounds().x, 0, 1e-4);
    EXPECT_NEAR(falling.GetBounds().width, 10, 1e-4);
    EXPECT_NEAR(falling.GetBounds().y, -10, 1e-4);
    EXPECT_NEAR(falling.GetBounds().height, 20, 1e-4);

    Path around;
    around.AddArc(10, {0, 0}, 0, 3 * kPi);
    EXPECT_NEAR(around.GetBounds().width, 20, 1e-4);
}

/// The outline of a button: two straight edges joined by half circles.
TEST(Path, ArcsJoinTheEdgesThatTheyMeetWithoutSpikes) {
    Path pill;
    pill.CreateSubpath(20, 2);
    pill.AddLine(80, 2);
    pill.AddArc(9, {80, 11}, -kPi / 2, kPi / 2);
    pill.AddLine(20, 20);
    pill.AddArc(9, {20, 11}, kPi / 2, 3 * kPi / 2);
    pill.CloseSubpath();
    const Rect bounds = pill.GetBounds();
    EXPECT_NEAR(bounds.x, 11, 1e-3);
    EXPECT_NEAR(bounds.y, 2, 1e-3);
    EXPECT_NEAR(bounds.width, 78, 1e-3);
    EXPECT_NEAR(bounds.height, 18, 1e-3);

    CGBitmapContext picture(100, 22);
    picture.Context().SetLineWidth(2);
    picture.Context().AddPath(pill.GetCGPath());
    picture.Context().StrokePath();
    EXPECT_GT(picture.PixelAt(50, 1).alpha, 200);
    EXPECT_EQ(picture.PixelAt(92, 2).alpha, 0) << "a spike stands out from the right arc";
    EXPECT_EQ(picture.PixelAt(7, 2).alpha, 0) << "a spike stands out from the closing point";
}

} // namespace
