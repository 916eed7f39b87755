#include "Strings/TextConversions.h"

#include "tests/Source/Strings/Text.h"

#include <cmath>
#include <limits>
#include <locale>

namespace {

TEST(TextConversions, WriteAndReadIntegersAsAStreamDoes) {
    EXPECT_EQ(NumToUString(-1, kHexFormat), "ffffffffffffffff"_u);
    using Limits = std::numeric_limits<long>;
    const std::pair<UString, long> decimals[] = {{" \t-12abc"_u, -12},
                                                 {"0x1F"_u, 0},
                                                 {Units({0xE9, '5'}), 5},
                                                 {Units({'4', 0xE9, '5'}), 4},
                                                 {"99999999999999999999"_u, Limits::max()},
                                                 {"-99999999999999999999"_u, Limits::min()}};
    for (const auto& [text, number] : decimals)
        EXPECT_EQ(UStringToNum(text, kDecimalFormat), number);
    EXPECT_EQ(UStringToNum("0x1F"_u, kHexFormat), 31);
    EXPECT_EQ(UStringToNum("fG"_u, kHexFormat), 15);
}

TEST(TextConversions, WriteDoublesWholeOrWithSixDigits) {
    for (const double value :
         {7.0, -0.0, -0.25, 1e22, 123456.7890125, 1e-320, 0.5e-6,
          -std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity()}) {
        char printed[400];
        std::snprintf(printed, sizeof printed, "%.*f", std::trunc(value) == value ? 0 : 6, value);
        EXPECT_EQ(DoubleToUStringPrecise(value), UString(printed, UString::kASCII));
    }
}

TEST(TextConversions, ReadDoublesUpToTheFirstUnusableUnit) {
    EXPECT_EQ(UStringToDouble(" -2.5e3 rest"_u), -2500.0);
    EXPECT_EQ(UStringToDouble(Units({'1', 0x0660, '2'})), 1.0);
    EXPECT_TRUE(std::isinf(UStringToDouble("1e999"_u)));
}

struct GroupingPunctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(TextConversions, FollowTheCLocaleWhateverTheProcessSets) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new GroupingPunctuation));
    EXPECT_EQ(NumToUString(1234567, kDecimalFormat), "1234567"_u);
    EXPECT_EQ(UStringToNum("1.234"_u, kDecimalFormat), 1);
    EXPECT_EQ(DoubleToUStringPrecise(2.5), "2.500000"_u);
    EXPECT_EQ(UStringToDouble("2.5"_u), 2.5);
    std::locale::global(before);
}

} // namespace
