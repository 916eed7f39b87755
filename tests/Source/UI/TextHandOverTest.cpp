#include "UI/Internal/TextHandOver.h"

#include "Strings/UString.h"

#include <gtest/gtest.h>

namespace {

TEST(TextHandOver, KeepsAsManyBytesAsTheTextHasUnitsAndNoPartOfACharacter) {
    const std::pair<const char*, const char*> texts[] = {
        {"", ""},  {"plain", "plain"}, {"café", "caf"}, {"éa", "é"},
        {"€", ""}, {"a€€€", "a€"},     {"😀", ""},       {"ab😀", "ab"}};
    for (const auto& [text, kept] : texts)
        EXPECT_EQ(Kestrin::HandOver(UString(text, UString::kUTF8)), kept) << text;
}

TEST(TextHandOver, StandardTextHasTheSameCharactersAndKeepsHalvesOfPairs) {
    const std::u16string halves = u"\xDB00x\xDC00\xDB10";
    UString text("é€a\U00010000b\U0001F600\U0004FFFF", UString::kUTF8);
    for (const char16_t half : halves)
        text.append(UString(static_cast<unsigned short>(half)));
    EXPECT_EQ(Kestrin::StandardText(text), u"é€a\U00010000b\U0001F600\U0004FFFF" + halves);
}

} // namespace
