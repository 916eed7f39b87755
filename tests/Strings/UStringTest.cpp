#include "Strings/UString.h"

#include "tests/Strings/Text.h"

#include <algorithm>
#include <stdexcept>

namespace {

const unsigned char* Bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

TEST(UString, ReadsBytesAsTheEncodingSays) {
    EXPECT_EQ(UString("caf\xE9", UString::kASCII), Units({'c', 'a', 'f', 0xE9}));
    EXPECT_EQ(UString(std::string("a\xC3\xA9"), UString::kUTF8), Units({'a', 0xE9}));
    EXPECT_EQ(UString("\x8E\xDB", UString::kMacRoman), Units({0xE9, 0x20AC}));
    EXPECT_EQ(UString("a\xFF"
                      "b",
                      UString::kUTF8),
              "a"_u);
    EXPECT_EQ(UString(Bytes("a\0b"), 3, UString::kASCII), Units({'a', 0, 'b'}));
    EXPECT_EQ(UString(Bytes("a\0b"), 3, UString::kUTF8), Units({'a', 0, 'b'}));
    EXPECT_EQ(UString("\xC3\xA9", static_cast<UString::ByteEncoding>(7)), Units({0xC3, 0xA9}));
    EXPECT_TRUE(UString(nullptr, 0, UString::kUTF8).empty());
    EXPECT_EQ(UString(static_cast<unsigned short>(0)).length(), 1u);
}

TEST(UString, WritesBytesAsTheEncodingSays) {
    const UString text = Units({'c', 'a', 'f', 0xE9, 0xDB00, 0xDC00});
    EXPECT_EQ(text.string(UString::kASCII, '?', true), "caf???");
    EXPECT_EQ(text.string(static_cast<UString::ByteEncoding>(-1), 'x', false), "cafxxx");
    EXPECT_EQ(text.string(UString::kUTF8, '?', false), "caf\xC3\xA9\xF0\x90\x80\x80");
    EXPECT_EQ(Units({0xE9, 0xF8FF}).string(UString::kMacRoman, 'x', false), "\x8E\xF0");
    EXPECT_EQ(text.utf32_str(), (UTF32String{'c', 'a', 'f', 0xE9, 0x10000}));
    EXPECT_EQ(Units({'a', 0xDC00, 'b'}).utf8_str(), "a");
}

TEST(UString, CopiesPartsWithinItsLength) {
    const UString text = "abcde"_u;
    EXPECT_EQ(UString(text, 2), "cde"_u);
    EXPECT_EQ(UString(text, 1, 2), "bc"_u);
    EXPECT_EQ(UString(text, 5, 9), UString::kEmptyString);
    EXPECT_THROW(UString(text, 6, 0), std::out_of_range);
}

TEST(UString, ChangesInPlaceAndKeepsTheClosingUnit) {
    UString text = "abc"_u;
    text.assign(text).append(text);
    EXPECT_EQ(text, "abcabc"_u);
    text.append(Bytes("\xC3\xA9\xFF"), 3, UString::kUTF8);
    EXPECT_EQ(text, Units({'a', 'b', 'c', 'a', 'b', 'c', 0xE9}));
    text.assign(Bytes("xy"), 2, UString::kMacRoman) += "\xC3\xA9";
    EXPECT_EQ(text, Units({'x', 'y', 0xC3, 0xA9}));
    text.erase(4, 10).erase(1, 0).erase(1, 1);
    EXPECT_EQ(text, Units({'x', 0xC3, 0xA9}));
    EXPECT_THROW(text.erase(4, 0), std::out_of_range);
    text.resize(1);
    text.resize(3);
    text[2] = 'z';
    EXPECT_EQ(text, Units({'x', 0, 'z'}));
    EXPECT_EQ(text.data()[text.length()], 0);
    EXPECT_THROW(text.resize(UString::npos), std::length_error);
}

TEST(UString, FindsRunsOfUnits) {
    const UString text = "abcbc"_u;
    EXPECT_EQ(text.find("bc"_u, 0), 1u);
    EXPECT_EQ(text.find("bc"_u, 2), 3u);
    EXPECT_EQ(text.find("bc"_u, 4), UString::npos);
    EXPECT_EQ(text.find("BC"_u, 0), UString::npos);
    EXPECT_EQ(text.find(UString(), 5), 5u);
    EXPECT_EQ(text.find(UString(), 6), UString::npos);
}

TEST(UString, SortsByUnsignedUnits) {
    const UString sorted[] = {UString(),       "B"_u,           "a"_u,           "ab"_u,
                              "abc"_u,         "abd"_u,         Units({0x00E9}), Units({0x0100}),
                              Units({0x7FFF}), Units({0x8000}), Units({0xFFFF})};
    for (const UString& first : sorted) {
        for (const UString& second : sorted) {
            EXPECT_EQ(first < second, &first < &second);
            EXPECT_EQ(first == second, &first == &second);
        }
    }
}

TEST(FormattedStreamProxy, AppendsWhatWasWrittenWhenItsLifeEnds) {
    UString text = "x"_u;
    { UString::FormattedStreamProxy untouched(text); }
    EXPECT_EQ(text, "x"_u);
    {
        UString::FormattedStreamProxy proxy(text);
        proxy.Stream() << std::hex << 255L << "\xC3\xA9";
        EXPECT_EQ(text, "x"_u);
    }
    EXPECT_EQ(text, Units({'x', 'f', 'f', 0xC3, 0xA9}));
}

} // namespace
