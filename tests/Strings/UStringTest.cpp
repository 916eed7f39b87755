#include "Strings/PlatformStrings.h"

#include "tests/Strings/Text.h"

#include <stdexcept>

namespace {

constexpr auto kNoEncoding = static_cast<UString::ByteEncoding>(7);

TEST(UString, ReadsAndWritesBytesAsTheEncodingSays) {
    EXPECT_EQ(UString("caf\xE9", UString::kASCII), Units({'c', 'a', 'f', 0xE9}));
    EXPECT_EQ(UString("\x8E\xC6\xDB", UString::kMacRoman), Units({0xE9, 0x2206, 0x20AC}));
    EXPECT_EQ(UString(std::string("a\0\xC3\xA9\xFF.", 6), UString::kUTF8), Units({'a', 0, 0xE9}));
    EXPECT_EQ(UString("\xC3\xA9", kNoEncoding), Units({0xC3, 0xA9}));
    EXPECT_TRUE(UString(nullptr, 0, UString::kUTF8).empty());

    const UString text = Units({'a', 0xE9, 0xDB00, 0xDC00, 0xDC00, 'b'});
    EXPECT_EQ(text.string(UString::kASCII, '?', true), "a????b");
    EXPECT_EQ(text.string(kNoEncoding, 'x', false), "axxxxb");
    EXPECT_EQ(text.string(UString::kUTF8, '?', false), "a\xC3\xA9\xF0\x90\x80\x80");
    EXPECT_EQ(text.utf32_str(), (UTF32String{'a', 0xE9, 0x10000}));
    EXPECT_EQ(Units({0xE9, 0xF8FF}).string(UString::kMacRoman, 'x', false), "\x8E\xF0");
}

TEST(UString, ChangesWithinItsLengthAndKeepsTheClosingUnit) {
    UString text = "abc"_u;
    text.assign(text).append(text);
    EXPECT_EQ(text, "abcabc"_u);
    text.append(reinterpret_cast<const unsigned char*>("\xC3\xA9\xFF"), 3, UString::kUTF8);
    text.erase(4, 2).erase(1, 0).erase(1, 2);
    EXPECT_EQ(text, Units({'a', 'a', 0xE9}));
    text.erase(1, 10) += "\xC3";
    text.resize(1);
    text.resize(3);
    EXPECT_EQ(text, Units({'a', 0, 0}));
    EXPECT_EQ(text.data()[text.length()], 0);
    EXPECT_EQ(UString(text, 1, 9), Units({0, 0}));
    EXPECT_EQ(UString(text, 3, 9), UString::kEmptyString);
    EXPECT_THROW(UString(text, 4, 0), std::out_of_range);
    EXPECT_THROW(text.erase(4, 0), std::out_of_range);
    EXPECT_THROW(text.resize(UString::npos), std::length_error);
}

TEST(UString, FindsRunsOfUnits) {
    const UString text = "abcbc"_u;
    EXPECT_EQ(text.find("bc"_u, 2), 3u);
    EXPECT_EQ(text.find("bc"_u, 4), UString::npos);
    EXPECT_EQ(text.find(UString(), 5), 5u);
    EXPECT_EQ(text.find(UString(), 6), UString::npos);
}

TEST(UString, SortsByUnsignedUnits) {
    const UString sorted[] = {UString(), "B"_u,           "a"_u,           "ab"_u,
                              "abd"_u,   Units({0x00E9}), Units({0x0100}), Units({0x8000})};
    for (const UString& first : sorted) {
        for (const UString& second : sorted)
            EXPECT_EQ(first < second, &first < &second);
    }
}

TEST(UString, CarriesItsUnitsThroughPlatformStrings) {
    const UString text = Units({'a', 0, 0xDB00, 0xDC00, 0xFFFF});
    EXPECT_EQ(CFToUString(UStringToCF(text).Get()), text);
    EXPECT_EQ(CFToUString(nullptr), UString());
    EXPECT_EQ(CFToUString(HFSToCFString({2, {'h', 'i', 'x'}}).Get()), "hi"_u);
}

TEST(FormattedStreamProxy, AppendsWhatWasWrittenWhenItsLifeEnds) {
    UString text = "x"_u;
    {
        UString::FormattedStreamProxy proxy(text);
        proxy.Stream() << std::hex << 255L << "\xC3\xA9";
        EXPECT_EQ(text, "x"_u);
    }
    EXPECT_EQ(text, Units({'x', 'f', 'f', 0xC3, 0xA9}));
}

} // namespace
