#include "Strings/SystemSurrogates.h"
#include "Strings/Transcoders.h"

using namespace SystemSurrogates;

namespace {

constexpr std::size_t kLongestSequence = 4;

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

} // namespace

std::size_t utf8_to_utf16(const unsigned char* source, std::size_t count, UTF16String& out) {
    out.clear();
    out.reserve(count / 2);
    std::size_t consumed = 0;
    while (consumed < count) {
        const unsigned char* const sequence = source + consumed;
        const std::size_t trailing = TrailingBytes(*sequence);
        if (trailing >= kLongestSequence || trailing >= count - consumed ||
            !IsWellFormed(sequence, trailing))
            break;
        AppendUtf32CharToUtf16(out, ValueOf(sequence, trailing));
        consumed += 1 + trailing;
    }
    return consumed;
}

void AppendUtf32CharToUtf16(UTF16String& out, unsigned int value) {
    constexpr unsigned short kUnwritable = 0xFEFF;
    if (value >= kPastLast) {
        out.push_back(kUnwritable);
    } else if (value < kFirstPaired) {
        out.push_back(static_cast<unsigned short>(value));
    } else {
        out.push_back(High(value));
        out.push_back(Low(value));
    }
}
