#include "Strings/TextConversions.h"

#include "tests/Strings/Text.h"

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <vector>

namespace {

constexpr long kLargest = std::numeric_limits<long>::max();
constexpr long kSmallest = std::numeric_limits<long>::min();

TEST(TextConversions, WriteIntegersAsAStreamDoes) {
    EXPECT_EQ(NumToUString(255, kHexFormat), "ff"_u);
    EXPECT_EQ(NumToUString(-1, kHexFormat), "ffffffffffffffff"_u);
    EXPECT_EQ(NumToUString(-5, kDecimalFormat), "-5"_u);
    EXPECT_EQ(NumToUString(1234567, static_cast<NumFormat>(9)), "1234567"_u);
}

TEST(TextConversions, ReadIntegersAsAStreamDoes) {
    EXPECT_EQ(UStringToNum(" \t-12abc"_u, kDecimalFormat), -12);
    EXPECT_EQ(UStringToNum("+7"_u, kDecimalFormat), 7);
    EXPECT_EQ(UStringToNum("0x1F"_u, kHexFormat), 31);
    EXPECT_EQ(UStringToNum("0x1F"_u, kDecimalFormat), 0);
    EXPECT_EQ(UStringToNum("fG"_u, kHexFormat), 15);
    EXPECT_EQ(UStringToNum(UString(), kDecimalFormat), 0);
    EXPECT_EQ(UStringToNum(Units({0xE9, '5'}), kDecimalFormat), 5);
    EXPECT_EQ(UStringToNum(Units({'4', 0xE9, '5'}), kDecimalFormat), 4);
    EXPECT_EQ(UStringToNum("99999999999999999999"_u, kDecimalFormat), kLargest);
    EXPECT_EQ(UStringToNum("-99999999999999999999"_u, kDecimalFormat), kSmallest);
}

TEST(TextConversions, WriteDoublesWholeOrWithSixDigits) {
    EXPECT_EQ(DoubleToUStringPrecise(7.0), "7"_u);
    EXPECT_EQ(DoubleToUStringPrecise(-0.25), "-0.250000"_u);
    EXPECT_EQ(DoubleToUStringPrecise(-0.0), "-0"_u);
    for (const double value :
         {0.1, 1e22, 123456.7890125, -2.5e-7, 1e-320, 0.5e-6, -std::numeric_limits<double>::max(),
          std::numeric_limits<double>::infinity(), std::nan("")}) {
        char printed[400];
        double whole = 0;
        std::snprintf(printed, sizeof printed, "%.*f", std::modf(value, &whole) == 0.0 ? 0 : 6,
                      value);
        EXPECT_EQ(DoubleToUStringPrecise(value), UString(printed, UString::kASCII));
    }
}

TEST(TextConversions, ReadDoublesUpToTheFirstUnusableUnit) {
    EXPECT_EQ(UStringToDouble(" -2.5e3 rest"_u), -2500.0);
    EXPECT_EQ(UStringToDouble(Units({'1', 0x0660, '2'})), 1.0);
    EXPECT_EQ(UStringToDouble("x"_u), 0.0);
    EXPECT_EQ(UStringToDouble("0x10"_u), 16.0);
    EXPECT_TRUE(std::isinf(UStringToDouble("1e999"_u)));
}

class GroupingPunctuation : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(TextConversions, FollowTheCLocaleWhateverTheProcessSets) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new GroupingPunctuation));
    const UString number = NumToUString(1234567, kDecimalFormat);
    const long read = UStringToNum("1.234"_u, kDecimalFormat);
    std::locale::global(before);
    EXPECT_EQ(number, "1234567"_u);
    EXPECT_EQ(read, 1);

    // Where the machine has a locale with a decimal comma.
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "C"}) {
        if (std::setlocale(LC_ALL, name))
            break;
    }
    EXPECT_EQ(DoubleToUStringPrecise(2.5), "2.500000"_u);
    EXPECT_EQ(UStringToDouble("2.5"_u), 2.5);
    std::setlocale(LC_ALL, "C");
}

TEST(TextConversions, TellDigitsFromEverythingElse) {
    EXPECT_TRUE(IsNumeric(UString()));
    EXPECT_TRUE(IsNumeric("0123456789"_u));
    for (const UString& text : {"-1"_u, "1.5"_u, " 1"_u, "a"_u, Units({0x0130}), Units({0x0660})})
        EXPECT_FALSE(IsNumeric(text));
}

TEST(TextConversions, CarryFourCharacterCodes) {
    EXPECT_EQ(OSTypeToUString(0x54455854), "TEXT"_u);
    EXPECT_EQ(UStringToOSType("TEXTs"_u), 0x54455854u);
    EXPECT_EQ(OSTypeToUString(0xC3004142), Units({0xC3}));
    EXPECT_EQ(OSTypeToUString(0), UString());
    EXPECT_EQ(UStringToOSType(Units({0x1C3, 'b', 'c'})), 0xC3626300u);
    EXPECT_EQ(UStringToOSType(UString()), 0u);
}

std::vector<unsigned char> RawData(const UString& text, unsigned int capacity) {
    std::vector<unsigned char> bytes(8, 0x55);
    UStringToRawData(text, bytes.data(), capacity);
    return bytes;
}

TEST(TextConversions, DecodePairsOfDigitsWithinTheRoom) {
    using Bytes = std::vector<unsigned char>;
    EXPECT_EQ(RawData("DE AD-be:Ef"_u, 8), (Bytes{0xDE, 0xAD, 0xBE, 0xEF, 0x55, 0x55, 0x55, 0x55}));
    EXPECT_EQ(RawData("xA gB@C`"_u, 8), (Bytes{0xAB, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}));
    EXPECT_EQ(RawData("0102030405"_u, 2), (Bytes{1, 2, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}));
    EXPECT_EQ(RawData(Units({0x0130, '9', 0x10}), 8),
              (Bytes{9, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55}));
    UStringToRawData("FF"_u, nullptr, 0);
}

} // namespace
