#include "UI/Internal/OSTextLayoutImpl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace Kestrin;

namespace {

UString Text(const std::string& utf8) {
    return UString(utf8, UString::kUTF8);
}

class TextLayoutTest : public testing::Test {
protected:
    TextLayoutTest() { layout.SetFont(kFontPlain, 14); }

    float WidthOf(const std::string& text) {
        layout.SetText(Text(text));
        return layout.Width();
    }

    float LineCountOf(const std::string& text) {
        layout.SetText(Text(text));
        return (layout.Height() + layout.GetLeading()) / layout.LineHeight();
    }

    OSTextLayoutImpl layout{NativeTextSystem::Shared()};
};

TEST_F(TextLayoutTest, WrapsAtLineEndsWordsAndInsideWordsThatAreTooLong) {
    layout.SetWrap(kWrapWord);
    EXPECT_FLOAT_EQ(LineCountOf("one\ntwo\r\nthree"), 3);
    EXPECT_FLOAT_EQ(LineCountOf("one\n\ntwo"), 3);
    layout.SetLineLength(120);
    EXPECT_GE(LineCountOf("Words that are broken over a number of lines"), 3);
    layout.SetLineLength(40);
    EXPECT_LE(WidthOf("Donaudampfschifffahrt"), 40);
    layout.SetLineLength(0);
    EXPECT_FLOAT_EQ(LineCountOf("abc"), 3) << "one character to a line at least";
}

TEST_F(TextLayoutTest, ShowsControlCharactersAsBlanks) {
    for (const TextWrap wrap : {kWrapNone, kWrapWord}) {
        layout.SetWrap(wrap);
        EXPECT_EQ(WidthOf("Left\tExtender\x02 1"), WidthOf("Left Extender  1"));
    }
}

TEST_F(TextLayoutTest, TruncatesToTheLongestTextThatFitsWithAnEllipsis) {
    const std::string text = "WWWWWWWWWWiiiiiiiiiiiiiiiiiiii";
    const float whole = WidthOf(text);
    for (const auto& [truncate, headShare] :
         {std::pair(kTruncateHead, 0.0), {kTruncateMiddle, 0.5}, {kTruncateTail, 1.0}}) {
        layout.SetTruncate(kTruncateNone);
        float longest = 0;
        for (std::size_t kept = 1; kept < text.size(); ++kept) {
            const auto head = static_cast<std::size_t>(std::ceil(kept * headShare));
            const std::string tail = text.substr(text.size() - (kept - head));
            const float width = WidthOf(text.substr(0, head) + "\u2026" + tail);
            longest = std::max(longest, width <= 150 ? width : 0);
        }
        layout.SetTruncate(truncate);
        layout.SetLineLength(150);
        EXPECT_EQ(WidthOf(text), longest) << "truncation " << truncate;
    }
    layout.SetLineLength(1);
    EXPECT_EQ(layout.Width(), whole) << "not even the ellipsis fits";
    layout.SetLineLength(whole + 1);
    EXPECT_EQ(layout.Width(), whole) << "the whole text fits";
}

TEST_F(TextLayoutTest, ShapesScriptsThatJoinAndRunFromTheRight) {
    EXPECT_LT(WidthOf("ببب"), 3 * WidthOf("ب") - 1) << "letters that join are narrower";
    EXPECT_EQ(WidthOf("e\u0301"), WidthOf("\u00E9")) << "a combining accent takes no room";
}

} // namespace
