#include "UI/DrawingContext.h"

#include "UI/Path.h"
#include "UI/TextLayout.h"

#include "tests/UI/Picture.h"
#include "tests/support/CapturedOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

using namespace Kestrin;
using testing::FieldsAre;

namespace {

constexpr RGBAColor kRed = {1, 0, 0, 1};
constexpr RGBAColor kBlack = {0, 0, 0, 1};
constexpr CGBitmapContext::Pixel kRedPixel = {255, 0, 0, 255};

UString Text(const char* utf8) {
    return UString(utf8, UString::kUTF8);
}

/// A drawing context in a draw event on a picture.
struct DrawEvent {
    explicit DrawEvent(double scale = 1, float alpha = 1)
        : picture(200, 90, scale) {
        context.SetDrawEventContextInfo(&picture.Context(), alpha);
        context.SetAlpha(1.0F);
    }

    CGBitmapContext picture;
    DrawingContext context;
};

TEST(DrawingContext, RefusesToDrawOutsideOfADrawEvent) {
    DrawingContext context;
    Path path;
    const Rect rect{0, 0, 10, 10};
    const auto layout = TextLayout::Create();
    const std::function<void()> operations[] = {
        [&] { context.SetAlpha(0.5F); },
        [&] { context.DrawString(UString(), rect, kTextAlignLeft); },
        [&] { context.FrameRect(rect, 1, kRed); },
        [&] { context.FillRect(rect, kRed); },
        [&] { context.StrokePath(path, 1, kRed, DrawingContext::kAntiAliasDefault); },
        [&] { context.FillPath(path, kRed); },
        [&] { context.DrawTextLayout(*layout, Point()); },
    };
    for (const auto& operation : operations) {
        CapturedOutput output;
        EXPECT_THAT(operation, testing::Throws<int>(testing::Eq(-603)));
        EXPECT_EQ(output.Text(),
                  "Attempt to draw outside of Draw event"
                  "OSStatus error FFFFFDA5, file:Source/UI/DrawingContextMacCocoa line:45\n");
    }
}

TEST(DrawingContext, ReachesToTheOtherSideOfNegativeExtents) {
    DrawEvent filled;
    filled.context.FillRect({30, 20, -20, -10}, kRed);
    EXPECT_THAT(InkOf(filled.picture), FieldsAre(10, 10, 29, 19));
    DrawEvent framed;
    framed.context.FrameRect({30, 10, -20, 30}, 4, kRed);
    EXPECT_THAT(InkOf(framed.picture), FieldsAre(8, 8, 31, 41)) << "half the line on either side";
    EXPECT_EQ(framed.picture.PixelAt(8, 8), kRedPixel) << "corners are square";
}

TEST(DrawingContext, MultipliesOpacityWithThatOfTheDrawEventAndClampsColours) {
    DrawEvent event(1, 0.5F);
    event.context.SetAlpha(0.5F);
    event.context.FillRect({0, 0, 20, 20}, {0, 0, 0, 0.5F});
    EXPECT_NEAR(event.picture.PixelAt(5, 5).alpha, 32, 1);
    DrawEvent clamped;
    clamped.context.FillRect({0, 0, 20, 20}, {255, -3, std::nanf(""), 1});
    EXPECT_EQ(clamped.picture.PixelAt(5, 5), kRedPixel);
}

TEST(DrawingContext, FillsPathsByNonZeroWindingAndUsesThemUp) {
    constexpr float kFullTurn = 2 * std::numbers::pi_v<float>;
    Path rings;
    rings.AddArc(20, {30, 30}, 0, kFullTurn);
    rings.AddArc(10, {30, 30}, 0, kFullTurn);
    Path other;
    other.AddArc(5, {80, 30}, 0, kFullTurn);
    DrawEvent event;
    event.context.FillPath(rings, kRed);
    event.context.FillPath(other, kBlack);
    EXPECT_EQ(event.picture.PixelAt(30, 30), kRedPixel) << "no hole, and not drawn again";
}

TEST(DrawingContext, CentresCaptionsVerticallyInsideTheirRectangles) {
    for (const auto& [height, scale] : {std::pair(22.0F, 1.0), {18.0F, 2.0}, {60.0F, 1.25}}) {
        DrawEvent event(scale);
        event.context.SetupFont(kFontPlain, 14, kBlack);
        event.context.DrawString(Text("HEIXH"), {20, 15, 150, height}, kTextAlignLeft);
        const Ink ink = InkOf(event.picture);
        EXPECT_GE(ink.top / scale, 15);
        EXPECT_LE((ink.bottom + 1) / scale, 15 + height);
        EXPECT_NEAR(ink.MiddleY() / scale, 15 + height / 2, 2.0) << "height " << height;
        EXPECT_NEAR(ink.left / scale, 20, 2.5);
    }
}

TEST(DrawingContext, DrawsNoTextInEmptyRectanglesAndNoEmptyText) {
    DrawEvent event;
    event.context.DrawString(UString(), {10, 10, 100, 30}, kTextAlignLeft);
    for (const Rect& empty : {Rect{10, 10, 0, 30}, {10, 10, 100, 0}, {110, 40, -100, 30}})
        event.context.DrawString(Text("HIH"), empty, kTextAlignLeft);
    EXPECT_EQ(InkOf(event.picture).right, -1);
}

} // namespace
