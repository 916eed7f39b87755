#include "tests/Strings/PlainTranscoders.h"

namespace Plain {

namespace {

std::size_t SequenceLength(unsigned lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

bool IsSequence(const unsigned char* bytes, std::size_t length) {
    const unsigned lead = bytes[0];
    const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : lead == 0xF4 ? 0 : 0x80;
    const unsigned highest = lead == 0xF4 ? 0x8F : 0xBF;
    if (length > 1 && (bytes[1] < lowest || bytes[1] > highest))
        return false;
    for (std::size_t i = 2; i < length; ++i) {
        if ((bytes[i] & 0xC0) != 0x80)
            return false;
    }
    return true;
}

// Sums up as the system does, for what follows 0xF4 may be no trailing byte.
unsigned Value(const unsigned char* bytes, std::size_t length) {
    const unsigned offsets[] = {0, 0, 0x3080, 0xE2080, 0x3C82080};
    unsigned value = 0;
    for (std::size_t i = 0; i < length; ++i)
        value = value * 64 + bytes[i];
    return value - offsets[length];
}

/// Reads one character and answers its number of units, 0 where the text is ill-formed or at its
/// end.
std::size_t ReadUnits(const unsigned short* source, std::size_t count, unsigned& value) {
    const auto isHigh = [](unsigned unit) { return unit >= 0xDB00 && unit <= 0xDBFF; };
    const auto isLow = [](unsigned unit) { return unit >= 0xDC00 && unit <= 0xDCFF; };
    if (count == 0 || isLow(source[0]))
        return 0;
    value = source[0];
    if (!isHigh(value))
        return 1;
    if (count == 1 || !isLow(source[1]))
        return 0;
    value = 0x10000 + (value - 0xDB00) * 0x400 + (source[1] - 0xDC00);
    return 2;
}

void AppendUtf8(std::string& bytes, unsigned value) {
    const auto put = [&bytes](unsigned byte) { bytes.push_back(static_cast<char>(byte)); };
    if (value < 0x80)
        return put(value);
    if (value < 0x800) {
        put(0xC0 + value / 64);
    } else {
        if (value < 0x10000) {
            put(0xE0 + value / 4096);
        } else {
            put(0xF0 + value / 262144);
            put(0x80 + value / 4096 % 64);
        }
        put(0x80 + value / 64 % 64);
    }
    put(0x80 + value % 64);
}

} // namespace

Utf16Result Utf8ToUtf16(const unsigned char* source, std::size_t count) {
    Utf16Result result;
    while (result.consumed < count) {
        const unsigned char* const bytes = source + result.consumed;
        const std::size_t length = SequenceLength(*bytes);
        if (length == 0 || length > count - result.consumed || !IsSequence(bytes, length))
            break;
        const unsigned value = Value(bytes, length);
        if (value >= 0x10000) {
            result.units.push_back(static_cast<unsigned short>(0xDB00 + (value - 0x10000) / 1024));
            result.units.push_back(static_cast<unsigned short>(0xDC00 + value % 1024));
        } else {
            result.units.push_back(static_cast<unsigned short>(value));
        }
        result.consumed += length;
    }
    return result;
}

Utf8Result Utf16ToUtf8(const unsigned short* source, std::size_t count) {
    Utf8Result result;
    unsigned value = 0;
    while (const std::size_t read =
               ReadUnits(source + result.consumed, count - result.consumed, value)) {
        AppendUtf8(result.bytes, value);
        result.consumed += read;
    }
    return result;
}

Utf32Result Utf16ToUtf32(const unsigned short* source, std::size_t count) {
    Utf32Result result;
    unsigned value = 0;
    while (const std::size_t read =
               ReadUnits(source + result.consumed, count - result.consumed, value)) {
        result.values.push_back(value);
        result.consumed += read;
    }
    return result;
}

} // namespace Plain
