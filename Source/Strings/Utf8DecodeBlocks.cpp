#include "Strings/Utf8Blocks.h"
#include "Strings/VectorUnit.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#if KESTRIN_HAS_AVX2_CODE

namespace {

// How a block is decoded: at every byte that is the last of its character, the unit is put together
// from that byte and the two before it; then the units of those bytes are moved to the front. No
// step branches on what the text holds, so text that cannot be predicted costs no more than other
// text.

/// For each set of eight units: a shuffle that moves the units of the set to the front.
constexpr auto kUnitsToFront = [] {
    std::array<std::array<std::uint8_t, 16>, 256> shuffles{};
    for (unsigned set = 0; set < 256; ++set) {
        std::size_t to = 0;
        for (unsigned unit = 0; unit < 8; ++unit) {
            if (set >> unit & 1) {
                shuffles[set][to++] = static_cast<std::uint8_t>(2 * unit);
                shuffles[set][to++] = static_cast<std::uint8_t>(2 * unit + 1);
            }
        }
    }
    return shuffles;
}();

KESTRIN_AVX2 inline __m256i Bytes(int value) {
    return _mm256_set1_epi8(static_cast<char>(value));
}

/// All ones in each byte that is `low` or above, as unsigned numbers.
KESTRIN_AVX2 inline __m256i IsFrom(int low, __m256i bytes) {
    return _mm256_cmpeq_epi8(_mm256_max_epu8(bytes, Bytes(low)), bytes);
}

/// All ones in each trailing byte.
KESTRIN_AVX2 inline __m256i IsTrailing(__m256i bytes) {
    // As signed numbers these are the lowest.
    return _mm256_cmpgt_epi8(Bytes(0xC0), bytes);
}

KESTRIN_AVX2 inline unsigned SetOf(__m256i flags) {
    return static_cast<unsigned>(_mm256_movemask_epi8(flags));
}

/// A block, and at each place the byte that stands one and two places before it in the text.
struct Block {
    __m256i bytes;
    __m256i before;
    __m256i twoBefore;
};

KESTRIN_AVX2 inline Block BlockAfter(__m256i previous, __m256i bytes) {
    const __m256i middle = _mm256_permute2x128_si256(previous, bytes, 0x21);
    return {bytes, _mm256_alignr_epi8(bytes, middle, 15), _mm256_alignr_epi8(bytes, middle, 14)};
}

/// Whether every sequence that has a byte in the block is well-formed so far, and of at most three
/// bytes.
KESTRIN_AVX2 inline bool IsRegular(const Block& block) {
    const __m256i expected =
        _mm256_or_si256(IsFrom(0xC0, block.before), IsFrom(0xE0, block.twoBefore));
    const __m256i misplaced = _mm256_xor_si256(IsTrailing(block.bytes), expected);
    const __m256i overlong2 =
        _mm256_cmpeq_epi8(_mm256_and_si256(block.bytes, Bytes(0xFE)), Bytes(0xC0));
    const __m256i overlong3 = _mm256_and_si256(_mm256_cmpeq_epi8(block.before, Bytes(0xE0)),
                                               _mm256_cmpgt_epi8(Bytes(0xA0), block.bytes));
    const __m256i irregular = _mm256_or_si256(_mm256_or_si256(misplaced, IsFrom(0xF0, block.bytes)),
                                              _mm256_or_si256(overlong2, overlong3));
    return _mm256_testz_si256(irregular, irregular);
}

/// The places of the last bytes of characters. Bit 31 is missing when the last character goes on
/// behind the block.
KESTRIN_AVX2 inline unsigned CharacterEnds(const Block& block) {
    return ~SetOf(_mm256_or_si256(IsFrom(0xC0, block.bytes), IsFrom(0xE0, block.before)));
}

/// The bits that each of the last three bytes of a character adds to it, before they are shifted; 0
/// for a byte that stands before the character. Only meaningful at the end of a character.
KESTRIN_AVX2 inline Block PayloadOf(const Block& block) {
    const __m256i trailing = IsTrailing(block.bytes);
    const __m256i twoTrailing = _mm256_and_si256(trailing, IsTrailing(block.before));
    const __m256i markOfTrailing =
        _mm256_or_si256(_mm256_and_si256(trailing, Bytes(0x40)), Bytes(0x80));
    return {_mm256_andnot_si256(markOfTrailing, block.bytes),
            _mm256_and_si256(_mm256_and_si256(trailing, Bytes(0x3F)), block.before),
            _mm256_and_si256(_mm256_and_si256(twoTrailing, Bytes(0x0F)), block.twoBefore)};
}

/// Sixteen units from the payloads of sixteen places.
KESTRIN_AVX2 inline __m256i Units(__m128i bytes, __m128i before, __m128i twoBefore) {
    return _mm256_or_si256(_mm256_or_si256(_mm256_cvtepu8_epi16(bytes),
                                           _mm256_slli_epi16(_mm256_cvtepu8_epi16(before), 6)),
                           _mm256_slli_epi16(_mm256_cvtepu8_epi16(twoBefore), 12));
}

KESTRIN_AVX2 inline void Store(__m256i units, unsigned short* out) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), units);
}

/// Writes those of eight units whose bits are set, and answers the place behind them.
KESTRIN_AVX2 inline unsigned short* WriteSet(__m128i units, unsigned set, unsigned short* out) {
    const auto* const shuffle = reinterpret_cast<const __m128i*>(kUnitsToFront[set & 0xFF].data());
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                     _mm_shuffle_epi8(units, _mm_loadu_si128(shuffle)));
    return out + __builtin_popcount(set & 0xFF);
}

KESTRIN_AVX2 inline unsigned short* WriteSets(__m256i units, unsigned set, unsigned short* out) {
    out = WriteSet(_mm256_castsi256_si128(units), set, out);
    return WriteSet(_mm256_extracti128_si256(units, 1), set >> 8, out);
}

KESTRIN_AVX2 inline std::size_t WriteBlock(const Block& block, unsigned ends, unsigned short* out) {
    const Block payload = PayloadOf(block);
    const __m256i low =
        Units(_mm256_castsi256_si128(payload.bytes), _mm256_castsi256_si128(payload.before),
              _mm256_castsi256_si128(payload.twoBefore));
    const __m256i high = Units(_mm256_extracti128_si256(payload.bytes, 1),
                               _mm256_extracti128_si256(payload.before, 1),
                               _mm256_extracti128_si256(payload.twoBefore, 1));
    WriteSets(high, ends >> 16, WriteSets(low, ends, out));
    return static_cast<std::size_t>(__builtin_popcount(ends));
}

KESTRIN_AVX2 inline void WriteASCII(__m256i bytes, unsigned short* out) {
    Store(_mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes)), out);
    Store(_mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)), out + kBlock / 2);
}

/// A block of the text, filled up with 0 bytes behind its end.
KESTRIN_AVX2 inline __m256i Load(const unsigned char* source, std::size_t count) {
    if (count >= kBlock)
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source));
    alignas(kBlock) unsigned char filled[kBlock] = {};
    std::memcpy(filled, source, count);
    return _mm256_load_si256(reinterpret_cast<const __m256i*>(filled));
}

/// How many bytes before `position` the character begins that was cut off there, 0 when none was.
std::size_t CutOffBytes(const unsigned char* source, std::size_t position) {
    if (position >= 1 && source[position - 1] >= 0xC0)
        return 1;
    return position >= 2 && source[position - 2] >= 0xE0 ? 2 : 0;
}

KESTRIN_AVX2 Stretch DecodeWithAVX2(const unsigned char* source, std::size_t count,
                                    std::size_t limit, unsigned short* units) {
    Stretch done;
    __m256i previous = _mm256_setzero_si256();
    bool isCutOff = false;
    while (done.consumed < limit) {
        const std::size_t rest = count - done.consumed;
        const __m256i bytes = Load(source + done.consumed, rest);
        if (SetOf(bytes) == 0 && !isCutOff) {
            WriteASCII(bytes, units + done.written);
            done.written += kBlock;
        } else {
            const Block block = BlockAfter(previous, bytes);
            if (!IsRegular(block))
                break;
            const unsigned ends = CharacterEnds(block);
            done.written += WriteBlock(block, ends, units + done.written);
            isCutOff = ends >> (kBlock - 1) == 0;
        }
        done.consumed += kBlock;
        previous = bytes;
    }
    if (done.consumed > count) {
        done.written -= done.consumed - count;
        done.consumed = count;
    }
    done.consumed -= CutOffBytes(source, done.consumed);
    return done;
}

} // namespace

#endif

namespace {

Stretch DecodeASCII(const unsigned char* source, std::size_t count, std::size_t limit,
                    unsigned short* units) {
    Stretch done;
    for (std::uint64_t bytes = 0; done.consumed < limit && count - done.consumed >= sizeof bytes;
         done += {8, 8}) {
        std::memcpy(&bytes, source + done.consumed, sizeof bytes);
        if ((bytes & 0x8080808080808080) != 0)
            break;
        std::copy_n(source + done.consumed, sizeof bytes, units + done.written);
    }
    return done;
}

} // namespace

Stretch DecodeUtf8Blocks(const unsigned char* source, std::size_t count, std::size_t limit,
                         unsigned short* units) {
#if KESTRIN_HAS_AVX2_CODE
    static const bool kUseAVX2 = HasAVX2();
    if (kUseAVX2)
        return DecodeWithAVX2(source, count, limit, units);
#endif
    return DecodeASCII(source, count, limit, units);
}
