#include "Strings/Transcoders.h"

#include <gtest/gtest.h>

namespace {

TEST(MacRoman, CarriesAllBytesThereAndBack) {
    std::string bytes(256, '\0');
    for (std::size_t value = 0; value < bytes.size(); ++value)
        bytes[value] = static_cast<char>(value);
    UTF16String units{'o', 'l', 'd'};
    EXPECT_EQ(MacRoman_to_utf16(reinterpret_cast<const unsigned char*>(bytes.data()), 256, units),
              256u);
    ASSERT_EQ(units.length(), 256u);
    EXPECT_EQ(units['A'], 'A');
    EXPECT_EQ(units[0x8E], 0xE9);
    EXPECT_EQ(units[0xC6], 0x2206);
    EXPECT_EQ(units[0xDB], 0x20AC);
    EXPECT_EQ(units[0xF0], 0xF8FF);
    std::string back = "old";
    EXPECT_EQ(utf16_to_MacRoman(units.data(), units.length(), back), 256u);
    EXPECT_EQ(back, bytes);
}

TEST(MacRoman, WritesAQuestionMarkForWhatItLacks) {
    std::string bytes;
    const UTF16String units = {'a', 0x0416, 0xDB00, 0xDC00, 'b', 0xDC00, 'c'};
    EXPECT_EQ(utf16_to_MacRoman(units.data(), units.length(), bytes), units.length());
    EXPECT_EQ(bytes, "a??b?c");
    EXPECT_EQ(utf16_to_MacRoman(units.data(), 3, bytes), 2u);
    EXPECT_EQ(bytes, "a?");
    EXPECT_EQ(utf16_to_MacRoman(nullptr, 0, bytes), 0u);
    EXPECT_EQ(bytes, "");
}

} // namespace
