#include "UI/DrawingContext.h"

#include "UI/Path.h"
#include "UI/TextLayout.h"

#include "Platform/UI/CGBitmapContext.h"
#include "tests/UI/Picture.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using namespace Kestrin;

namespace {

constexpr RGBAColor kRed = {1, 0, 0, 1};
constexpr RGBAColor kBlack = {0, 0, 0, 1};

UString Text(const char* utf8) {
    return UString(utf8, UString::kUTF8);
}

/// A drawing context in a draw event on a picture.
class DrawEvent {
public:
    explicit DrawEvent(double width = 200, double height = 60, double scale = 1, float alpha = 1)
        : picture(width, height, scale) {
        context.SetDrawEventContextInfo(&picture.Context(), alpha);
        context.SetAlpha(1.0F);
    }

    CGBitmapContext picture;
    DrawingContext context;
};

TEST(DrawingContext, RefusesToDrawOutsideOfADrawEvent) {
    DrawingContext context;
    Path path;
    const auto layout = TextLayout::Create();
    const std::function<void()> operations[] = {
        [&] { context.SetAlpha(0.5F); },
        [&] {
            context.DrawString(UString(), {0, 0, 10, 10}, kTextAlignLeft);
        },
        [&] {
            context.FrameRect({0, 0, 10, 10}, 1, kRed);
        },
        [&] {
            context.FillRect({0, 0, 10, 10}, kRed);
        },
        [&] { context.StrokePath(path, 1, kRed, DrawingContext::kAntiAliasDefault); },
        [&] { context.FillPath(path, kRed); },
        [&] {
            context.DrawTextLayout(*layout, {0, 0});
        },
    };
    for (const auto& operation : operations) {
        RecordingLog::Clear();
        CapturedOutput output;
        int thrown = 0;
        try {
            operation();
        } catch (int error) {
            thrown = error;
        }
        EXPECT_EQ(thrown, -603);
        const std::string fault =
            "OSStatus error FFFFFDA5, file:Source/UI/DrawingContextMacCocoa line:45\n";
        EXPECT_EQ(output.Text(), "Attempt to draw outside of Draw event" + fault);
        EXPECT_THAT(RecordingLog::Lines(), testing::ElementsAre(fault));
    }
}

TEST(DrawingContext, FillsTheGroundThatANegativeExtentDescribes) {
    DrawEvent event;
    event.context.FillRect({30, 20, -20, -10}, kRed);
    const Ink ink = InkOf(event.picture);
    EXPECT_EQ(ink.left, 10);
    EXPECT_EQ(ink.right, 29);
    EXPECT_EQ(ink.top, 10);
    EXPECT_EQ(ink.bottom, 19);
    EXPECT_EQ(event.picture.PixelAt(20, 15), (CGBitmapContext::Pixel{255, 0, 0, 255}));
}

TEST(DrawingContext, FramesWithHalfOfTheLineOnEitherSide) {
    DrawEvent event;
    event.context.FrameRect({30, 10, -20, 30}, 4, kRed);
    const Ink ink = InkOf(event.picture);
    EXPECT_EQ(ink.left, 8);
    EXPECT_EQ(ink.right, 31);
    EXPECT_EQ(ink.top, 8) << "corners are square";
    EXPECT_EQ(event.picture.PixelAt(8, 8).alpha, 255);
    EXPECT_EQ(event.picture.PixelAt(20, 20).alpha, 0);
}

TEST(DrawingContext, MultipliesOpacityWithThatOfTheDrawEvent) {
    DrawEvent event(20, 20, 1, 0.5F);
    event.context.SetAlpha(0.5F);
    event.context.FillRect({0, 0, 20, 20}, {0, 0, 0, 0.5F});
    EXPECT_NEAR(event.picture.PixelAt(5, 5).alpha, 32, 1);
}

TEST(DrawingContext, ClampsColoursOutOfRange) {
    DrawEvent event(20, 20);
    event.context.FillRect({0, 0, 20, 20}, {255, -3, std::nanf(""), 1});
    EXPECT_EQ(event.picture.PixelAt(5, 5), (CGBitmapContext::Pixel{255, 0, 0, 255}));
}

void AddSquare(Path& path, float x, float size) {
    path.CreateSubpath(x, x);
    path.AddLine(x + size, x);
    path.AddLine(x + size, x + size);
    path.AddLine(x, x + size);
    path.CloseSubpath();
}

TEST(DrawingContext, FillsPathsByNonZeroWindingAndUsesThemUp) {
    Path squares;
    AddSquare(squares, 0, 40);
    AddSquare(squares, 10, 20);
    DrawEvent event;
    event.context.FillPath(squares, kRed);
    EXPECT_EQ(event.picture.PixelAt(20, 20).alpha, 255) << "the overlap is no hole";

    Path other;
    AddSquare(other, 50, 8);
    event.context.FillPath(other, kBlack);
    EXPECT_EQ(event.picture.PixelAt(20, 20).red, 255) << "the first path was drawn again";
}

TEST(DrawingContext, MeasuresTextWithoutADrawEvent) {
    DrawingContext context;
    EXPECT_EQ(context.StringWidth(UString()), 0);
    const float narrow = context.StringWidth(Text("Group position"));
    EXPECT_GT(narrow, 0);
    EXPECT_GT(context.StringWidth(Text("Group position ")), narrow) << "blanks count";
    context.SetupFont(kFont1, 20, kBlack);
    EXPECT_NEAR(context.StringWidth(Text("Group position")), 2 * narrow, narrow * 0.05);
}

struct Caption {
    float height;
    unsigned int size;
    double scale;
};

class DrawingContextCaptions : public testing::TestWithParam<Caption> {};

TEST_P(DrawingContextCaptions, StandInsideTheirRectanglesVerticallyCentred) {
    const Caption caption = GetParam();
    const Rect rect{20, 15, 150, caption.height};
    DrawEvent event(200, 90, caption.scale);
    event.context.SetupFont(kFontPlain, caption.size, kBlack);
    event.context.DrawString(Text("HEIXH"), rect, kTextAlignLeft);
    const Ink ink = InkOf(event.picture);
    ASSERT_FALSE(ink.IsEmpty());
    EXPECT_GE(ink.top / caption.scale, rect.y);
    EXPECT_LE((ink.bottom + 1) / caption.scale, rect.y + rect.height);
    EXPECT_NEAR(ink.MiddleY() / caption.scale, rect.y + rect.height / 2, 2.0);
    EXPECT_NEAR(ink.left / caption.scale, rect.x, 2.5);
}

INSTANTIATE_TEST_SUITE_P(Sizes, DrawingContextCaptions,
                         testing::Values(Caption{25, 14, 1}, Caption{22, 14, 1}, Caption{18, 14, 2},
                                         Caption{60, 14, 1.5}, Caption{40, 30, 1.25}));

TEST(DrawingContext, DrawsNoTextInEmptyRectanglesAndNoEmptyText) {
    DrawEvent event;
    event.context.DrawString(UString(), {10, 10, 100, 30}, kTextAlignLeft);
    event.context.DrawString(Text("HIH"), {10, 10, 0, 30}, kTextAlignLeft);
    event.context.DrawString(Text("HIH"), {10, 10, 100, 0}, kTextAlignLeft);
    event.context.DrawString(Text("HIH"), {110, 40, -100, 30}, kTextAlignLeft);
    EXPECT_TRUE(InkOf(event.picture).IsEmpty());
}

TEST(DrawingContext, DrawsALayoutOfTheCallersFromItsFirstBaseline) {
    const auto layout = TextLayout::Create();
    layout->SetText(Text("HIH"));
    DrawEvent event;
    event.context.DrawTextLayout(*layout, {50, 30});
    const Ink ink = InkOf(event.picture);
    EXPECT_NEAR(ink.left, 50, 2);
    EXPECT_EQ(ink.bottom, 29);
}

} // namespace
