#include "Strings/Transcoders.h"

#include "tests/Source/Strings/PlainTranscoders.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <random>

namespace {

constexpr std::size_t kShort = 300;
constexpr std::size_t kLong = 9000; // is transcoded in several chunks
constexpr int kRounds = 5000;

/// Where readable memory ends: reading on ends the process.
unsigned char* EndOfMemory() {
    constexpr std::size_t kSize = 1 << 16; // whole pages on every machine
    static void* const memory =
        mmap(nullptr, 2 * kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    unsigned char* const end = static_cast<unsigned char*>(memory) + kSize;
    EXPECT_EQ(mprotect(end, kSize, PROT_NONE), 0);
    return end;
}

/// A copy of the text that ends `shift` bytes before the readable memory does.
template <typename Text>
auto CopyBeforeTheEnd(const Text& text, std::size_t shift = 0) {
    const std::size_t size = text.size() * sizeof(text[0]);
    return reinterpret_cast<decltype(text.data())>(
        std::memcpy(EndOfMemory() - shift - size, text.data(), size));
}

// Every text stands with its end at the end of a page, so at any alignment of its beginning; units
// also stand one byte before it, at an odd address.
class RandomText : public testing::Test {
protected:
    std::size_t Below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    }

    /// Units of a random mixture: a text keeps to its mixture for a while, so that whole blocks of
    /// each kind occur as well as every change from one kind to the other.
    UTF16String Units() {
        const std::size_t limits[] = {0x80, 0x80, 0x800, 0xD800, 0xDB00};
        UTF16String units;
        const std::size_t count = Below(Below(20) == 0 ? kLong : kShort);
        while (units.size() < count) {
            const std::size_t limit = limits[Below(std::size(limits))];
            for (std::size_t run = Below(40); run > 0; --run)
                units.push_back(static_cast<unsigned short>(Below(limit)));
            if (Below(4) == 0) {
                units.push_back(static_cast<unsigned short>(0xDB00 + Below(0x100)));
                units.push_back(static_cast<unsigned short>(0xDC00 + Below(0x100)));
            }
        }
        return units;
    }

    /// The text with up to two elements replaced by values at which the rules change.
    template <typename Text>
    Text Damaged(Text text, const Text& values) {
        for (std::size_t times = Below(3); times > 0 && !text.empty(); --times)
            text[Below(text.size())] = values[Below(values.size())];
        return text;
    }

    std::mt19937 random{1};
};

TEST_F(RandomText, IsDecodedFromUtf8AsThePlainDecoderDoes) {
    const std::string values(
        "\0\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xDF\xE0\xED\xEF\xF0\xF4\xF5\xFF", 18);
    for (int round = 0; round < kRounds; ++round) {
        const UTF16String units = Units();
        std::string bytes = Plain::Utf16ToUtf8(units.data(), units.size()).text;
        bytes.resize(bytes.size() - std::min(bytes.size(), Below(4)));
        bytes = Damaged(bytes, values);
        const auto* const source = reinterpret_cast<const unsigned char*>(CopyBeforeTheEnd(bytes));
        ASSERT_EQ(Plain::ResultOf(utf8_to_utf16, source, bytes.size()),
                  Plain::Utf8ToUtf16(source, bytes.size()))
            << round;
    }
}

TEST_F(RandomText, IsEncodedAsThePlainEncodersDo) {
    const UTF16String values = {0x7F,   0x80,   0x7FF,  0x800,  0xD800, 0xDAFF,
                                0xDB00, 0xDBFF, 0xDC00, 0xDCFF, 0xDD00, 0xFFFF};
    for (std::size_t round = 0; round < kRounds; ++round) {
        const UTF16String units = Damaged(Units(), values);
        const unsigned short* const source = CopyBeforeTheEnd(units, round % 2);
        ASSERT_EQ(Plain::ResultOf(utf16_to_utf8, source, units.size()),
                  Plain::Utf16ToUtf8(units.data(), units.size()))
            << round;
        ASSERT_EQ(Plain::ResultOf(utf16_to_utf32, source, units.size()),
                  Plain::Utf16ToUtf32(units.data(), units.size()))
            << round;
    }
}

} // namespace
