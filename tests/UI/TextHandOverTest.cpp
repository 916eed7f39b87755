#include "UI/TextHandOver.h"

#include "Strings/UString.h"

#include <gtest/gtest.h>

namespace {

using Kestrin::HandOver;
using Kestrin::StandardText;

UString Text(const std::string& utf8) {
    return UString(utf8, UString::kUTF8);
}

TEST(TextHandOver, KeepsAsManyBytesAsTheTextHasUnitsAndNoPartOfACharacter) {
    EXPECT_EQ(HandOver(Text("")), "");
    EXPECT_EQ(HandOver(Text("plain")), "plain");
    EXPECT_EQ(HandOver(Text("café")), "caf");
    EXPECT_EQ(HandOver(Text("éa")), "é");
    EXPECT_EQ(HandOver(Text("€")), "");
    EXPECT_EQ(HandOver(Text("a€€€")), "a€");
    EXPECT_EQ(HandOver(Text("😀")), "");
    EXPECT_EQ(HandOver(Text("ab😀")), "ab");
}

TEST(TextHandOver, StandardTextHasTheSameCharactersInAsManyUnits) {
    EXPECT_EQ(StandardText(Text("é€")), u"é€");
    EXPECT_EQ(StandardText(Text("a\U00010000b")), u"a\U00010000b");
    EXPECT_EQ(StandardText(Text("\U0001F600\U0004FFFF")), u"\U0001F600\U0004FFFF");
    // Halves of pairs stay what they are.
    const char16_t lone[] = {0xDB00, u'x', 0xDC00, 0xDB10};
    UString text;
    for (const char16_t unit : lone)
        text.append(UString(static_cast<unsigned short>(unit)));
    EXPECT_EQ(StandardText(text), std::u16string(lone, 4));
}

} // namespace
