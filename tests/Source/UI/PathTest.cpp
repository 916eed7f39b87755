#include "UI/Path.h"

#include "Platform/UI/CGBitmapContext.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using namespace Kestrin;

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

float WidthOfLine(std::initializer_list<float> points) {
    Path path;
    path.CreateSubpath(*points.begin(), 0);
    for (const float x : points)
        path.AddLine(x, 0);
    return path.GetBounds().width;
}

TEST(Path, DropsPointsOnTheSameWholePosition) {
    EXPECT_NEAR(WidthOfLine({10, 10.4F, 10.6F, 11.4F}), 0.6, 1e-4);
    // Rounding cuts toward zero: -0.9 and 0.4 are the same position, -1.6 is another.
    EXPECT_EQ(WidthOfLine({0.4F, -0.9F}), 0);
    EXPECT_FLOAT_EQ(WidthOfLine({0.4F, -0.9F, -1.6F}), 2);
}

TEST(Path, DropsWhatIsNotANumberAndWhatNoPointWentBefore) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(WidthOfLine({5, kNaN, std::numeric_limits<float>::infinity(), 7}), 2);
    Path path;
    path.AddLine(20, 20);
    path.AddArc(kNaN, {5, 5}, 0, 1);
    path.CloseSubpath();
    EXPECT_EQ(path.GetBounds(), Rect());
}

TEST(Path, ArcsRunClockwiseExactlyFromTheLargerAngle) {
    const auto boundsOfArc = [](float from, float to) {
        Path path;
        path.AddArc(1000, {0, 0}, from, to);
        const Rect bounds = path.GetBounds();
        return Rect{std::round(bounds.x), std::round(bounds.y), std::round(bounds.width),
                    std::round(bounds.height)};
    };
    EXPECT_EQ(boundsOfArc(0, kPi / 2), (Rect{0, 0, 1000, 1000}));
    EXPECT_EQ(boundsOfArc(kPi / 2, -kPi / 2), (Rect{0, -1000, 1000, 2000}));
    EXPECT_EQ(boundsOfArc(0, 3 * kPi), (Rect{-1000, -1000, 2000, 2000}));
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
    CGBitmapContext picture(100, 22);
    picture.Context().SetLineWidth(2);
    picture.Context().AddPath(pill.GetCGPath());
    picture.Context().StrokePath();
    EXPECT_EQ(picture.PixelAt(92, 2).alpha, 0) << "a spike stands out from the right arc";
    EXPECT_EQ(picture.PixelAt(7, 2).alpha, 0) << "a spike stands out from the closing point";
}

} // namespace
