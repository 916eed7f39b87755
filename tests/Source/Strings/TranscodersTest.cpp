#include "Strings/Transcoders.h"

#include "tests/Source/Strings/PlainTranscoders.h"

#include <gtest/gtest.h>

namespace {

void ExpectDecoded(const std::string& bytes, const UTF16String& expected, std::size_t consumed) {
    const auto* const source = reinterpret_cast<const unsigned char*>(bytes.data());
    EXPECT_EQ(Plain::ResultOf(utf8_to_utf16, source, bytes.size()),
              (Plain::Result<UTF16String>{expected, consumed}))
        << bytes;
}

void ExpectEncoded(const UTF16String& units, const char* expected, std::size_t consumed) {
    EXPECT_EQ(Plain::ResultOf(utf16_to_utf8, units.data(), units.size()),
              (Plain::Result<std::string>{expected, consumed}));
}

TEST(Utf8ToUtf16, DecodesWhatTheSystemTakesAndStopsBeforeTheFirstIllFormedSequence) {
    ExpectDecoded("A\xC3\xA9\xE2\x82\xAC", {0x41, 0xE9, 0x20AC}, 6);
    ExpectDecoded("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0xDB00, 0xDC00, 0xDEFF, 0xDFFF}, 8);
    ExpectDecoded("\xED\xA0\x80\xF4\x41\x80\x80", {0xD800, 0xDDC4, 0xDC00}, 7);
    ExpectDecoded("A\xE2\x82", {0x41}, 1);
    ExpectDecoded("A\xE0\x9F\x80"
                  "BC",
                  {0x41}, 1);
}

TEST(Utf16ToUtf8, WritesTheSystemsOwnPairsAndStopsBeforeASurrogateWithoutItsPartner) {
    ExpectEncoded({0x41, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF},
                  "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", 6);
    ExpectEncoded({0xDB00, 0xDC00, 0xDBFF, 0xDCFF}, "\xF0\x90\x80\x80\xF1\x8F\xB3\xBF", 4);
    ExpectEncoded({0xD800, 0xDAFF, 0xDD00}, "\xED\xA0\x80\xED\xAB\xBF\xED\xB4\x80", 3);
    for (const unsigned short alone : {0xDC05, 0xDB05})
        ExpectEncoded({0x41, alone, 0xDB05, 0xDC05}, "A", 1);
}

TEST(AppendUtf32CharToUtf16, WritesPairsThatReadBackUpToU4FFFF) {
    UTF16String units{'a'};
    for (const unsigned value : {0xFFFFu, 0x10000u, 0x4FFFFu, 0x50000u})
        AppendUtf32CharToUtf16(units, value);
    EXPECT_EQ(units, (UTF16String{'a', 0xFFFF, 0xDB00, 0xDC00, 0xDBFF, 0xDFFF, 0xDC00, 0xDC00}));
}

} // namespace
