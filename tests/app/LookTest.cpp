#include "app/Look.h"

#include "UI/Window.h"

#include "app/NumericEditBox.h"
#include "tests/support/NativeInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace Kestrin;

namespace {

/// Contrasts are those of WCAG 2.1, of which 4.5 is the least for text.
double Luminance(const RGBAColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double Contrast(const RGBAColor& a, const RGBAColor& b) {
    const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

TEST(Look, EveryTextAndMarkStandsOutFromItsGround) {
    EXPECT_NEAR(Contrast(kBlack, kWhite), 21, 1e-6);
    EXPECT_GE(Contrast(kWhite, kContentBG), 4.5) << "captions, the current item, buttons";
    for (const RGBAColor& ground : {kContentBG, kWhite})
        EXPECT_GE(Contrast(kButtonLabel, ground), 3) << "the ring around what has the focus";
    EXPECT_GE(Contrast(kCtrlBlue, kContentBG), 3) << "the frame of the pop-up";
    for (const bool highContrast : {false, true}) {
        if (highContrast)
            NativeInput::UseHighContrast();
        const auto [text, mark] = NativeInput::MarkedText();
        EXPECT_GE(Contrast(text, mark), 4.5);
    }
}

TEST(Look, OfABoxIsTheSameOnADesktopOfHighContrast) {
    View root;
    root.SetDimensions(80, 25);
    NumericEditBox box;
    box.Init(&root, {0, 0}, 80, 0, 127, "Group"_u);
    const NativeInput::Picture usual(root);
    NativeInput::UseHighContrast();
    const NativeInput::Picture highContrast(root);
    for (int i = 0; i < 80 * 25; ++i)
        ASSERT_EQ(usual.At(i % 80, i / 80), highContrast.At(i % 80, i / 80));
}

} // namespace
