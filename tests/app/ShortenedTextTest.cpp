#include "app/ShortenedText.h"

#include "UI/View.h"

#include <gtest/gtest.h>

namespace {

TEST(ShortenedText, KeepsAsMuchAsFitsAndCutsNoCharacterInTwo) {
    Kestrin::View view;
    view.SetupFont(static_cast<Kestrin::FontID>(3), 14, {});
    UString text;
    for (int count = 0; count < 40; ++count)
        text.append(UString("\xF0\x9D\x84\x9E", UString::kUTF8)); // a clef, two units each
    const float whole = view.StringWidth(text);
    EXPECT_EQ(ShortenedText(view, text, whole), text);
    EXPECT_EQ(ShortenedText(view, text, 1), UString());
    const float most = view.StringWidth(UString(text, 0, 2)) + 1;
    for (float width = whole / 4; width < whole; width += 7) {
        const UString shortened = ShortenedText(view, text, width);
        const std::size_t kept = shortened.length() - 1;
        EXPECT_EQ(shortened[kept], 0x2026);
        EXPECT_EQ(UString(shortened, 0, kept), UString(text, 0, kept));
        EXPECT_EQ(kept % 2, 0u) << width;
        EXPECT_LE(view.StringWidth(shortened), width);
        EXPECT_GT(view.StringWidth(shortened), width - most) << "no more is cut than needed";
    }
}

} // namespace
