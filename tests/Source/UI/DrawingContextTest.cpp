#include "UI/DrawingContext.h"

#include "UI/Path.h"
#include "UI/TextLayout.h"

#include "tests/Source/UI/Picture.h"
#include "tests/support/CapturedOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using namespace Kestrin;
using testing::FieldsAre;

namespace {

constexpr RGBAColor kRed = {1, 0, 0, 1};
constexpr CGBitmapContext::Pixel kRedPixel = {255, 0, 0, 255};

/// A drawing context in a draw event on a picture.
struct DrawEvent {
    explicit DrawEvent(float alpha = 1)
        : picture(200, 90) {
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
    DrawEvent event(0.5F);
    event.context.SetAlpha(0.5F);
    event.context.FillRect({0, 0, 20, 20}, {0, 0, 0, 0.5F});
    EXPECT_NEAR(event.picture.PixelAt(5, 5).alpha, 32, 1);
    DrawEvent clamped;
    clamped.context.FillRect({0, 0, 20, 20}, {255, -3, std::nanf(""), 1});
    EXPECT_EQ(clamped.picture.PixelAt(5, 5), kRedPixel);
}

TEST(DrawingContext, ShortensAStringThatIsTooLong) {
    const UString text = "mmmmmmmmmmmmmmmmmmmm"_u;
    for (const TextTruncate truncate : {kTruncateTail, kTruncateNone}) {
        DrawEvent event;
        event.context.SetTruncate(truncate);
        event.context.DrawString(text, {10, 10, 60, 20}, kTextAlignLeft);
        EXPECT_EQ(InkOf(event.picture).right < 72, truncate == kTruncateTail);
    }
}

TEST(DrawingContext, FillsPathsByNonZeroWindingAndUsesThemUp) {
    Path rings, other;
    rings.AddArc(20, {30, 30}, 0, 7);
    rings.AddArc(10, {30, 30}, 0, 7);
    other.AddArc(5, {80, 30}, 0, 7);
    DrawEvent event;
    event.context.FillPath(rings, kRed);
    event.context.FillPath(other, {0, 0, 0, 1});
    EXPECT_EQ(event.picture.PixelAt(30, 30), kRedPixel) << "no hole, and not drawn again";
}

} // namespace
