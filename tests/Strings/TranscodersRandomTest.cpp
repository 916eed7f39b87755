#include "Strings/Transcoders.h"

#include "tests/Strings/GuardedMemory.h"
#include "tests/Strings/PlainTranscoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using Random = std::mt19937;
using Units = std::vector<unsigned short>;

constexpr std::size_t kLongest = 700;
constexpr int kRounds = 10000;

std::size_t Below(Random& random, std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

/// Units of a random mixture: a text keeps to its mixture for a while, so that whole blocks of each
/// kind occur as well as every change from one kind to the other.
Units RandomUnits(Random& random) {
    const unsigned short limits[] = {0x80, 0x80, 0x800, 0xD800, 0xDB00};
    Units units;
    const std::size_t count = Below(random, kLongest);
    while (units.size() < count) {
        const unsigned short limit = limits[Below(random, std::size(limits))];
        for (std::size_t run = Below(random, 40); run > 0; --run)
            units.push_back(static_cast<unsigned short>(Below(random, limit)));
        if (Below(random, 4) == 0) {
            units.push_back(static_cast<unsigned short>(0xDB00 + Below(random, 0x100)));
            units.push_back(static_cast<unsigned short>(0xDC00 + Below(random, 0x100)));
        }
    }
    return units;
}

/// Overwrites a few elements with the values at which the rules change.
template <typename Unit, std::size_t kCount>
void Damage(std::vector<Unit>& elements, const Unit (&values)[kCount], Random& random) {
    for (std::size_t times = Below(random, 3); times > 0 && !elements.empty(); --times)
        elements[Below(random, elements.size())] = values[Below(random, kCount)];
}

Units DamagedUnits(Random& random) {
    static constexpr unsigned short kValues[] = {0x7F,   0x80,   0x7FF,  0x800,  0xD800, 0xDAFF,
                                                 0xDB00, 0xDBFF, 0xDC00, 0xDCFF, 0xDD00, 0xFFFF};
    Units units = RandomUnits(random);
    Damage(units, kValues, random);
    return units;
}

std::vector<unsigned char> DamagedUtf8(Random& random) {
    static constexpr unsigned char kValues[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0,
                                                0xBF, 0xC0, 0xC2, 0xDF, 0xE0, 0xED, 0xEF,
                                                0xF0, 0xF4, 0xF5, 0xF7, 0xF8, 0xFF};
    const Units units = RandomUnits(random);
    const std::string text = Plain::Utf16ToUtf8(units.data(), units.size()).bytes;
    std::vector<unsigned char> bytes(text.begin(), text.end());
    bytes.resize(bytes.size() - std::min(bytes.size(), Below(random, 4)));
    Damage(bytes, kValues, random);
    return bytes;
}

// Every text stands with its end at the end of a page, so at any alignment of its beginning; units
// also stand one byte before it, at an odd address.

TEST(RandomText, DecodesFromUtf8AsThePlainDecoderDoes) {
    Random random(1);
    GuardedMemory memory(4 * kLongest);
    UTF16String units;
    for (int round = 0; round < kRounds; ++round) {
        const auto bytes = DamagedUtf8(random);
        const unsigned char* const source = memory.CopyBeforeTheEnd(bytes.data(), bytes.size());
        const Plain::Utf16Result expected = Plain::Utf8ToUtf16(bytes.data(), bytes.size());
        ASSERT_EQ(utf8_to_utf16(source, bytes.size(), units), expected.consumed) << round;
        ASSERT_EQ(units, expected.units) << round;
    }
}

TEST(RandomText, IsEncodedAsThePlainEncodersDo) {
    Random random(2);
    GuardedMemory memory(2 * kLongest + 200);
    std::string bytes;
    UTF32String values;
    for (int round = 0; round < kRounds; ++round) {
        const Units units = DamagedUnits(random);
        const unsigned short* const source = memory.CopyBeforeTheEnd(
            units.data(), units.size(), static_cast<std::size_t>(round % 2));
        const Plain::Utf8Result expected = Plain::Utf16ToUtf8(units.data(), units.size());
        ASSERT_EQ(utf16_to_utf8(source, units.size(), bytes), expected.consumed) << round;
        ASSERT_EQ(bytes, expected.bytes) << round;
        ASSERT_EQ(utf16_to_utf32(source, units.size(), values), expected.consumed) << round;
        ASSERT_EQ(values, Plain::Utf16ToUtf32(units.data(), units.size()).values) << round;
    }
}

TEST(RandomText, PassesThroughMacRomanAtAPagesEnd) {
    Random random(4);
    GuardedMemory memory(kLongest * 2);
    UTF16String units;
    std::string back;
    for (std::size_t count = 0; count < kLongest; count += 1 + count / 8) {
        std::vector<unsigned char> bytes(count);
        std::generate(bytes.begin(), bytes.end(),
                      [&random] { return static_cast<unsigned char>(Below(random, 256)); });
        const unsigned char* const source = memory.CopyBeforeTheEnd(bytes.data(), count);
        ASSERT_EQ(MacRoman_to_utf16(source, count, units), count);
        const unsigned short* const wide = memory.CopyBeforeTheEnd(units.data(), units.size());
        ASSERT_EQ(utf16_to_MacRoman(wide, units.size(), back), units.size());
        ASSERT_EQ(back, std::string(bytes.begin(), bytes.end()));
    }
}

} // namespace
