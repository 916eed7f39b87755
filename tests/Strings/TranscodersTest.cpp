#include "Strings/Transcoders.h"

#include <gtest/gtest.h>

namespace {

struct Decoded {
    UTF16String units;
    std::size_t consumed;
    bool operator==(const Decoded&) const = default;
};

Decoded Decode(const std::string& bytes) {
    Decoded decoded{{'o', 'l', 'd'}, 0};
    decoded.consumed = utf8_to_utf16(reinterpret_cast<const unsigned char*>(bytes.data()),
                                     bytes.size(), decoded.units);
    return decoded;
}

struct Encoded {
    std::string bytes;
    std::size_t consumed;
    bool operator==(const Encoded&) const = default;
};

Encoded Encode(const UTF16String& units) {
    Encoded encoded{"old", 0};
    encoded.consumed = utf16_to_utf8(units.data(), units.size(), encoded.bytes);
    return encoded;
}

TEST(Utf8ToUtf16, DecodesEveryLengthOfSequence) {
    EXPECT_EQ(Decode("A\xC3\xA9\xE2\x82\xAC"), (Decoded{{0x41, 0xE9, 0x20AC}, 6}));
    EXPECT_EQ(Decode("\xF0\x90\x80\x80"), (Decoded{{0xDB00, 0xDC00}, 4}));
    EXPECT_EQ(Decode("\xF4\x8F\xBF\xBF"), (Decoded{{0xDEFF, 0xDFFF}, 4}));
    EXPECT_EQ(Decode(""), (Decoded{{}, 0}));
}

TEST(Utf8ToUtf16, PassesWhatTheSystemDoesNotCheck) {
    EXPECT_EQ(Decode("\xED\xA0\x80"), (Decoded{{0xD800}, 3}));
    EXPECT_EQ(Decode("\xF4\x41\x80\x80"), (Decoded{{0xDDC4, 0xDC00}, 4}));
}

TEST(Utf8ToUtf16, StopsBeforeTheFirstIllFormedSequence) {
    const Decoded onlyTheA{{0x41}, 1};
    for (const char* tail :
         {"\xC3", "\xE2\x82", "\xF0\x90\x80", "\x80", "\xC0\x80", "\xC1\xBF", "\xC3\x41",
          "\xC3\xC3", "\xE0\x9F\x80", "\xE2\x41\x80", "\xE2\x82\x41", "\xE2\x82\xC3",
          "\xF0\x8F\x80\x80", "\xF0\x90\x41\x80", "\xF0\x90\x80\x41", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF"}) {
        EXPECT_EQ(Decode(std::string("A") + tail), onlyTheA) << testing::PrintToString(tail);
        EXPECT_EQ(Decode(std::string("A") + tail + "BC"), onlyTheA) << testing::PrintToString(tail);
    }
}

TEST(Utf16ToUtf8, WritesTheSystemsOwnPairsAndPassesOtherSurrogates) {
    EXPECT_EQ(Encode({0x41, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF}),
              (Encoded{"A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", 6}));
    EXPECT_EQ(Encode({0xDB00, 0xDC00}), (Encoded{"\xF0\x90\x80\x80", 2}));
    EXPECT_EQ(Encode({0xDBFF, 0xDCFF}), (Encoded{"\xF1\x8F\xB3\xBF", 2}));
    EXPECT_EQ(Encode({0xD800, 0xDAFF, 0xDD00, 0xDFFF}),
              (Encoded{"\xED\xA0\x80\xED\xAB\xBF\xED\xB4\x80\xED\xBF\xBF", 4}));
}

TEST(Utf16ToUtf8, StopsBeforeASurrogateWithoutItsPartner) {
    EXPECT_EQ(Encode({0x41, 0xDC05, 0x42}), (Encoded{"A", 1}));
    EXPECT_EQ(Encode({0x41, 0xDB05}), (Encoded{"A", 1}));
    EXPECT_EQ(Encode({0x41, 0xDB05, 0xDB05, 0xDC05}), (Encoded{"A", 1}));
    EXPECT_EQ(Encode({}), (Encoded{"", 0}));
}

TEST(Utf16ToUtf32, CombinesPairsAndStopsBeforeLoneSurrogates) {
    UTF32String values{1, 2, 3};
    const UTF16String units = {0x41, 0xDB00, 0xDC00, 0xD800, 0xDB12};
    EXPECT_EQ(utf16_to_utf32(units.data(), units.size(), values), 4u);
    EXPECT_EQ(values, (UTF32String{0x41, 0x10000, 0xD800}));
    EXPECT_EQ(utf16_to_utf32(units.data() + 2, 3, values), 0u);
    EXPECT_TRUE(values.empty());
}

TEST(AppendUtf32CharToUtf16, WritesPairsThatReadBackUpToU4FFFF) {
    UTF16String units{'a'};
    AppendUtf32CharToUtf16(units, 0xFFFF);
    AppendUtf32CharToUtf16(units, 0x10000);
    AppendUtf32CharToUtf16(units, 0x110000);
    EXPECT_EQ(units, (UTF16String{'a', 0xFFFF, 0xDB00, 0xDC00, 0xFEFF}));

    UTF16String high;
    AppendUtf32CharToUtf16(high, 0x4FFFF);
    EXPECT_EQ(high, (UTF16String{0xDBFF, 0xDFFF}));
    high.clear();
    AppendUtf32CharToUtf16(high, 0x50000);
    EXPECT_EQ(high, (UTF16String{0xDC00, 0xDC00}));
}

} // namespace
