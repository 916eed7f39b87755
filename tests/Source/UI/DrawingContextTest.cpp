#include "UI/DrawingContext.h"

#include "UI/Path.h"
#include "UI/TextLayout.h"

#include "tests/support/CapturedOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using namespace Kestrin;

namespace {

constexpr RGBAColor kRed = {1, 0, 0, 1};

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

} // namespace
