#include "Strings/ChunkedTranscoding.h"
#include "Strings/SystemSurrogates.h"
#include "Strings/Transcoders.h"
#include "Strings/Utf8Blocks.h"

#include <algorithm>

using namespace SystemSurrogates;

namespace {

constexpr std::size_t kLongestSequence = 4;

// So many bytes are decoded at a time, into units that fit into the nearest cache.
constexpr std::size_t kChunk = 4096;

// The marks of lead and trailing bytes, accumulated, by the number of trailing bytes.
constexpr unsigned int kOffsetsFromUTF8[kLongestSequence] = {0x0, 0x3080, 0xE2080, 0x3C82080};

/// How many bytes follow a lead byte; 0 also for bytes that cannot lead.
constexpr std::size_t TrailingBytes(unsigned char lead) {
    return lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF8 ? 3 : 4;
}

constexpr bool IsTrailing(unsigned char byte) {
    return byte >= 0x80 && byte <= 0xBF;
}

/// Whether `second` may follow `lead`. After 0xF4 there is no lower bound.
constexpr bool IsSecondOf(unsigned char lead, unsigned char second) {
    if (second > 0xBF)
        return false;
    switch (lead) {
    case 0xE0:
        return second >= 0xA0;
    case 0xF0:
        return second >= 0x90;
    case 0xF4:
        return second <= 0x8F;
    default:
        return second >= 0x80;
    }
}

constexpr bool IsLegalLead(unsigned char lead) {
    return lead < 0x80 || (lead > 0xC1 && lead < 0xF5);
}

bool IsWellFormed(const unsigned char* sequence, std::size_t trailing) {
    if (!IsLegalLead(sequence[0]))
        return false;
    for (std::size_t i = trailing; i > 1; --i) {
        if (!IsTrailing(sequence[i]))
            return false;
    }
    return trailing == 0 || IsSecondOf(sequence[0], sequence[1]);
}

unsigned int ValueOf(const unsigned char* sequence, std::size_t trailing) {
    unsigned int value = sequence[0];
    for (std::size_t i = 1; i <= trailing; ++i)
        value = (value << 6) + sequence[i];
    return value - kOffsetsFromUTF8[trailing];
}

/// Writes one or two units and answers how many.
std::size_t WriteUnits(unsigned int value, unsigned short* units) {
    if (value < kFirstPaired) {
        units[0] = static_cast<unsigned short>(value);
        return 1;
    }
    units[0] = High(value);
    units[1] = Low(value);
    return 2;
}

/// Decodes one sequence after the other up to the first that is ill-formed or starts at `limit` or
/// behind it.
Stretch DecodePlainly(const unsigned char* source, std::size_t count, std::size_t limit,
                      unsigned short* units) {
    Stretch done;
    while (done.consumed < limit) {
        const unsigned char* const sequence = source + done.consumed;
        const std::size_t trailing = TrailingBytes(*sequence);
        if (trailing >= kLongestSequence || trailing >= count - done.consumed ||
            !IsWellFormed(sequence, trailing))
            break;
        done.written += WriteUnits(ValueOf(sequence, trailing), units + done.written);
        done.consumed += 1 + trailing;
    }
    return done;
}

/// Decodes a chunk, or the text up to its first ill-formed sequence.
Stretch DecodeChunk(const unsigned char* source, std::size_t count, unsigned short* units) {
    const std::size_t limit = std::min(count, kChunk);
    Stretch done;
    while (done.consumed < limit) {
        done += DecodeUtf8Blocks(source + done.consumed, count - done.consumed,
                                 limit - done.consumed, units + done.written);
        if (done.consumed >= limit)
            break;
        const std::size_t rest = count - done.consumed;
        const Stretch plain = DecodePlainly(source + done.consumed, rest, std::min(rest, kBlock),
                                            units + done.written);
        if (plain.consumed == 0)
            break;
        done += plain;
    }
    return done;
}

} // namespace

std::size_t utf8_to_utf16(const unsigned char* source, std::size_t count, UTF16String& out) {
    return TranscodeInChunks<kChunk, kChunk + 2 * kBlock>(source, count, count / 2, DecodeChunk,
                                                          out);
}

void AppendUtf32CharToUtf16(UTF16String& out, unsigned int value) {
    constexpr unsigned short kUnwritable = 0xFEFF;
    unsigned short units[2] = {kUnwritable};
    const std::size_t written = value < kPastLast ? WriteUnits(value, units) : 1;
    out.append(units, written);
}
