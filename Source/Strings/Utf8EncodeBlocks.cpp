#include "Strings/SystemSurrogates.h"
#include "Strings/Utf8Blocks.h"
#include "Strings/VectorUnit.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>

#if KESTRIN_HAS_AVX2_CODE

namespace {

// How units are encoded, eight at a time: each is written as a sequence of three bytes, whose first
// one or two are then left out where the unit is small. No step branches on what the text holds, so
// text that cannot be predicted costs no more than other text.

/// Four units' lengths: bit n is set when unit n needs a second byte, bit 4 + n when it needs a
/// third.
using Lengths = unsigned;

/// For each of the lengths: a shuffle that moves the bytes that count to the front. The three bytes
/// of a unit stand at the beginning of four.
constexpr auto kBytesToFront = [] {
    std::array<std::array<std::uint8_t, 16>, 256> shuffles{};
    for (Lengths lengths = 0; lengths < 256; ++lengths) {
        std::size_t to = 0;
        for (unsigned unit = 0; unit < 4; ++unit) {
            const bool two = lengths >> unit & 1;
            const bool three = lengths >> (4 + unit) & 1;
            if (three)
                shuffles[lengths][to++] = static_cast<std::uint8_t>(4 * unit);
            if (two)
                shuffles[lengths][to++] = static_cast<std::uint8_t>(4 * unit + 1);
            shuffles[lengths][to++] = static_cast<std::uint8_t>(4 * unit + 2);
        }
    }
    return shuffles;
}();

constexpr std::size_t kGroup = 8;

KESTRIN_AVX2 inline __m128i LoadGroup(const unsigned short* units) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
}

/// A group of the text, filled up with 0 units behind its end.
KESTRIN_AVX2 inline __m128i LoadGroup(const unsigned short* units, std::size_t count) {
    if (count >= kGroup)
        return LoadGroup(units);
    alignas(16) unsigned short filled[kGroup] = {};
    std::memcpy(filled, units, count * sizeof *units);
    return LoadGroup(filled);
}

KESTRIN_AVX2 inline __m256i LoadHalfBlock(const unsigned short* units) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(units));
}

/// Writes a block of units when all of them are ASCII, and answers whether they are.
KESTRIN_AVX2 inline bool WriteASCII(const unsigned short* units, char* out) {
    const __m256i low = LoadHalfBlock(units);
    const __m256i high = LoadHalfBlock(units + kBlock / 2);
    if (!_mm256_testz_si256(_mm256_or_si256(low, high), _mm256_set1_epi16(~0x7F)))
        return false;
    // Packing works on each half of the register by itself; the permutation restores the order.
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(low, high), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), packed);
    return true;
}

KESTRIN_AVX2 inline bool HasSurrogates(__m128i units) {
    static_assert(SystemSurrogates::IsHigh(0xDB00) && SystemSurrogates::IsLow(0xDCFF));
    const __m128i fromFirst = _mm_sub_epi16(units, _mm_set1_epi16(static_cast<short>(0xDB00)));
    const __m128i isWithin =
        _mm_cmpeq_epi16(_mm_min_epu16(fromFirst, _mm_set1_epi16(0x1FF)), fromFirst);
    return !_mm_testz_si128(isWithin, isWithin);
}

KESTRIN_AVX2 inline __m256i Wide(int value) {
    return _mm256_set1_epi32(value);
}

KESTRIN_AVX2 inline Lengths SetOf(__m256i flags) {
    return static_cast<Lengths>(_mm256_movemask_ps(_mm256_castsi256_ps(flags)));
}

/// A sequence of three bytes for each unit: what leads three, what leads two or stands second of
/// three, and the last.
KESTRIN_AVX2 inline __m256i Sequences(__m256i units, __m256i needsTwo, __m256i needsThree) {
    const __m256i first = _mm256_or_si256(_mm256_srli_epi32(units, 12), Wide(0xE0));
    const __m256i middleMark =
        _mm256_xor_si256(_mm256_and_si256(needsThree, Wide(0x4000)), Wide(0xC000));
    const __m256i middle =
        _mm256_or_si256(_mm256_and_si256(_mm256_slli_epi32(units, 2), Wide(0x3F00)), middleMark);
    const __m256i lastMark = _mm256_and_si256(needsTwo, Wide(0x80));
    const __m256i lastBits =
        _mm256_andnot_si256(_mm256_and_si256(needsTwo, Wide(0x40)), Wide(0x7F));
    const __m256i last = _mm256_or_si256(_mm256_and_si256(units, lastBits), lastMark);
    return _mm256_or_si256(_mm256_or_si256(first, middle), _mm256_slli_epi32(last, 16));
}

/// Writes the sequences of four units and answers the place behind them.
KESTRIN_AVX2 inline char* WriteSequences(__m128i sequences, Lengths lengths, char* out) {
    const auto* const shuffle = reinterpret_cast<const __m128i*>(kBytesToFront[lengths].data());
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                     _mm_shuffle_epi8(sequences, _mm_loadu_si128(shuffle)));
    return out + 4 + __builtin_popcount(lengths);
}

KESTRIN_AVX2 inline std::size_t WriteGroup(__m128i group, char* out) {
    const __m256i units = _mm256_cvtepu16_epi32(group);
    const __m256i needsTwo = _mm256_cmpgt_epi32(units, Wide(0x7F));
    const __m256i needsThree = _mm256_cmpgt_epi32(units, Wide(0x7FF));
    const __m256i sequences = Sequences(units, needsTwo, needsThree);
    const Lengths two = SetOf(needsTwo);
    const Lengths three = SetOf(needsThree);
    char* const middle =
        WriteSequences(_mm256_castsi256_si128(sequences), (two & 0xF) | (three & 0xF) << 4, out);
    char* const end =
        WriteSequences(_mm256_extracti128_si256(sequences, 1), two >> 4 | (three & 0xF0), middle);
    return static_cast<std::size_t>(end - out);
}

/// Encodes groups up to the first with a surrogate or that starts at `limit` or behind it.
KESTRIN_AVX2 inline Stretch WriteGroups(const unsigned short* source, std::size_t count,
                                        std::size_t limit, char* bytes) {
    Stretch done;
    while (done.consumed < limit) {
        const __m128i group = LoadGroup(source + done.consumed, count - done.consumed);
        if (HasSurrogates(group))
            break;
        done.written += WriteGroup(group, bytes + done.written);
        done.consumed += kGroup;
    }
    if (done.consumed > count) {
        done.written -= done.consumed - count;
        done.consumed = count;
    }
    return done;
}

KESTRIN_AVX2 Stretch EncodeWithAVX2(const unsigned short* source, std::size_t count,
                                    std::size_t limit, char* bytes) {
    Stretch done;
    while (done.consumed < limit) {
        const std::size_t rest = count - done.consumed;
        if (rest >= kBlock && WriteASCII(source + done.consumed, bytes + done.written)) {
            done += {kBlock, kBlock};
            continue;
        }
        const std::size_t stretch = std::min(rest, kBlock);
        const Stretch groups =
            WriteGroups(source + done.consumed, rest, stretch, bytes + done.written);
        done += groups;
        if (groups.consumed < stretch)
            break;
    }
    return done;
}

} // namespace

#endif

namespace {

Stretch EncodeASCII(const unsigned short* source, std::size_t count, std::size_t limit,
                    char* bytes) {
    Stretch done;
    for (unsigned short units[4];
         done.consumed < limit && count - done.consumed >= std::size(units); done += {4, 4}) {
        std::memcpy(units, source + done.consumed, sizeof units);
        std::uint64_t all = 0;
        std::memcpy(&all, units, sizeof all);
        if ((all & 0xFF80FF80FF80FF80) != 0)
            break;
        std::copy_n(units, std::size(units), bytes + done.written);
    }
    return done;
}

} // namespace

Stretch EncodeUtf8Blocks(const unsigned short* source, std::size_t count, std::size_t limit,
                         char* bytes) {
#if KESTRIN_HAS_AVX2_CODE
    static const bool kUseAVX2 = HasAVX2();
    if (kUseAVX2)
        return EncodeWithAVX2(source, count, limit, bytes);
#endif
    return EncodeASCII(source, count, limit, bytes);
}
