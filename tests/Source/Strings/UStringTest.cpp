#include "Strings/PlatformStrings.h"

#include "tests/Source/Strings/Text.h"

#include <stdexcept>

namespace {

TEST(UString, ReadsAndWritesBytesAsTheEncodingSays) {
    EXPECT_EQ(UString("caf\xE9", UString::kASCII), Units({'c', 'a', 'f', 0xE9}));
    EXPECT_EQ(UString("\x8E\xC6\xDB", UString::kMacRoman), Units({0xE9, 0x2206, 0x20AC}));
    EXPECT_EQ(UString(std::string("a\0\xC3\xA9\xFF.", 6), UString::kUTF8), Units({'a', 0, 0xE9}));
    EXPECT_TRUE(UString(nullptr, 0, UString::kUTF8).empty());

    const UString text = Units({'a', 0xE9, 0xDB00, 0xDC00, 0xDC00, 'b'});
    EXPECT_EQ(text.string(UString::kASCII, '?', true), "a????b");
    EXPECT_EQ(text.string(UString::kUTF8, '?', false), "a\xC3\xA9\xF0\x90\x80\x80");
    EXPECT_EQ(text.utf32_str(), (UTF32String{'a', 0xE9, 0x10000}));
    EXPECT_EQ(Units({0xE9, 0xF8FF}).string(UString::kMacRoman, 'x', false), "\x8E\xF0");
}

TEST(UString, ChangesWithinItsLengthAndKeepsTheClosingUnit) {
    UString text = "abc"_u;
    text.assign(text).append(text).erase(4, 2).erase(0, 1);
    EXPECT_EQ(text, "bca"_u);
    EXPECT_EQ(text.find("ca"_u, 1), 1u);
    EXPECT_EQ(text.find("ca"_u, 2), UString::npos);
    text.append(reinterpret_cast<const unsigned char*>("\xC3\xA9\xFF"), 3, UString::kUTF8);
    UString::FormattedStreamProxy(text).Stream() << "\xC3";
    EXPECT_EQ(text, Units({'b', 'c', 'a', 0xE9, 0xC3}));
    text.assign(reinterpret_cast<const unsigned char*>("b"), 1, UString::kASCII).resize(3);
    EXPECT_EQ(text, Units({'b', 0, 0}));
    EXPECT_EQ(text.data()[text.length()], 0);
    EXPECT_EQ(UString(text, 1, 9), Units({0, 0}));
    EXPECT_THROW(UString(text, 4, 0), std::out_of_range);
    EXPECT_THROW(text.erase(4, 0), std::out_of_range);
}

TEST(UString, CarriesItsUnitsThroughPlatformStrings) {
    const UString text = Units({'a', 0, 0xDB00, 0xDC00, 0xFFFF});
    EXPECT_EQ(CFToUString(UStringToCF(text).Get()), text);
    EXPECT_EQ(CFToUString(nullptr), UString());
    EXPECT_EQ(CFToUString(HFSToCFString({2, {'h', 'i', 'x'}}).Get()), "hi"_u);
}

} // namespace
