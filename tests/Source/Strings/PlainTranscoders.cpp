#include "tests/Source/Strings/PlainTranscoders.h"

namespace Plain {

namespace {

/// What the bytes of a sequence must be by its first one. The system does not ask what follows 0xF4
/// to be a trailing byte.
struct Sequence {
    unsigned char firstLead, lastLead;
    std::size_t length;
    unsigned char lowest, highest; ///< of the second byte
    unsigned offset;               ///< of the sum of its bytes from the character
};

constexpr Sequence kSequences[] = {
    {0x00, 0x7F, 1, 0x00, 0xFF, 0},         {0xC2, 0xDF, 2, 0x80, 0xBF, 0x3080},
    {0xE0, 0xE0, 3, 0xA0, 0xBF, 0xE2080},   {0xE1, 0xEF, 3, 0x80, 0xBF, 0xE2080},
    {0xF0, 0xF0, 4, 0x90, 0xBF, 0x3C82080}, {0xF1, 0xF3, 4, 0x80, 0xBF, 0x3C82080},
    {0xF4, 0xF4, 4, 0x00, 0x8F, 0x3C82080}};

/// The sequence that begins here, null where none does.
const Sequence* SequenceAt(const unsigned char* bytes, std::size_t count) {
    for (const Sequence& each : kSequences) {
        if (bytes[0] < each.firstLead || bytes[0] > each.lastLead || each.length > count)
            continue;
        bool fits = each.length == 1 || (bytes[1] >= each.lowest && bytes[1] <= each.highest);
        for (std::size_t i = 2; fits && i < each.length; ++i)
            fits = (bytes[i] & 0xC0) == 0x80;
        return fits ? &each : nullptr;
    }
    return nullptr;
}

void AppendUtf8(std::string& bytes, unsigned value) {
    const int trailing = value < 0x80 ? 0 : value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    const unsigned marks[] = {0, 0xC0, 0xE0, 0xF0};
    bytes.push_back(static_cast<char>(marks[trailing] + (value >> (6 * trailing))));
    for (int rest = trailing - 1; rest >= 0; --rest)
        bytes.push_back(static_cast<char>(0x80 + (value >> (6 * rest)) % 64));
}

} // namespace

Result<UTF16String> Utf8ToUtf16(const unsigned char* source, std::size_t count) {
    Result<UTF16String> result;
    while (result.consumed < count) {
        const unsigned char* bytes = source + result.consumed;
        const Sequence* const sequence = SequenceAt(bytes, count - result.consumed);
        if (!sequence)
            break;
        unsigned value = 0;
        for (std::size_t i = 0; i < sequence->length; ++i)
            value = value * 64 + bytes[i];
        value -= sequence->offset;
        if (value >= 0x10000) {
            result.text.push_back(static_cast<unsigned short>(0xDB00 + (value - 0x10000) / 1024));
            value = 0xDC00 + value % 1024;
        }
        result.text.push_back(static_cast<unsigned short>(value));
        result.consumed += sequence->length;
    }
    return result;
}

Result<UTF32String> Utf16ToUtf32(const unsigned short* source, std::size_t count) {
    const auto isHigh = [](unsigned unit) { return unit >= 0xDB00 && unit <= 0xDBFF; };
    const auto isLow = [](unsigned unit) { return unit >= 0xDC00 && unit <= 0xDCFF; };
    Result<UTF32String> result;
    for (std::size_t& at = result.consumed; at < count && !isLow(source[at]); ++at) {
        unsigned value = source[at];
        if (isHigh(value)) {
            if (at + 1 == count || !isLow(source[at + 1]))
                break;
            value = 0x10000 + (value - 0xDB00) * 0x400 + (source[++at] - 0xDC00);
        }
        result.text.push_back(value);
    }
    return result;
}

Result<std::string> Utf16ToUtf8(const unsigned short* source, std::size_t count) {
    const Result<UTF32String> values = Utf16ToUtf32(source, count);
    Result<std::string> result{{}, values.consumed};
    for (const auto value : values.text)
        AppendUtf8(result.text, value);
    return result;
}

} // namespace Plain
