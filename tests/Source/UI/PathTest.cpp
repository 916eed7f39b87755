#include "UI/Path.h"

#include "Platform/UI/CGBitmapContext.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace Kestrin;

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

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
