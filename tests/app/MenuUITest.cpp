#include "app/MenuUI.h"

#include "app/ShortenedText.h"
#include "tests/app/RecordingHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

UString Ascii(const char* text) {
    return UString(text, UString::kASCII);
}

TEST(MenuUI, EveryChoiceMakesTheItemCurrentAndIsSent) {
    RecordingHandler handler;
    MenuUI menu(&handler, Ascii("Edit settings for"));
    menu.AppendItem(Ascii("Left"), 0);
    menu.AppendItem(Ascii("Right"), 1);

    menu.ItemSelected(&menu, 2, 1);
    EXPECT_EQ(menu.GetCurrentItem(), 2);
    menu.ItemSelected(&menu, 2, 1);
    EXPECT_THAT(handler.commands, ElementsAre(kCommandMenu, kCommandMenu));
}

TEST(MenuUI, OpensForNoOrdinaryKey) {
    MenuUI menu(nullptr, Ascii("Edit settings for"));
    EXPECT_FALSE(menu.DoTextInput(Ascii("x"), 0, 0));
    EXPECT_FALSE(menu.DoTextInput(UString(), 0, Kestrin::kKeyReturn));
    EXPECT_FALSE(menu.DoTextInput(UString(), 0, Kestrin::kKeyEscape));
}

class ShortenedTextTest : public testing::Test {
protected:
    void SetUp() override { view.SetupFont(static_cast<Kestrin::FontID>(3), 14, {}); }

    Kestrin::View view;
};

TEST_F(ShortenedTextTest, KeepsAsMuchAsFits) {
    const UString text = Ascii("A surface with a name that no frame can hold");
    EXPECT_EQ(ShortenedText(view, text, view.StringWidth(text)), text);

    const float width = view.StringWidth(text) / 2;
    const UString shortened = ShortenedText(view, text, width);
    const std::size_t kept = shortened.length() - 1;
    EXPECT_EQ(shortened[kept], 0x2026);
    EXPECT_EQ(UString(shortened, 0, kept), UString(text, 0, kept));
    EXPECT_LE(view.StringWidth(shortened), width);
    EXPECT_GT(view.StringWidth(shortened), width - 20) << "no more is cut than needed";

    EXPECT_EQ(ShortenedText(view, text, 1), UString());
    EXPECT_EQ(ShortenedText(view, UString(), 0), UString());
}

TEST_F(ShortenedTextTest, NeverCutsACharacterInTwo) {
    UString text;
    for (int count = 0; count < 40; ++count)
        text.append(UString("\xF0\x9D\x84\x9E", UString::kUTF8)); // a clef, two units each
    for (float width = 10; width < view.StringWidth(text); width += 7)
        EXPECT_EQ(ShortenedText(view, text, width).length() % 2, 1u) << width;
}

} // namespace
