#include "Platform/CoreFoundation/CFStringBytes.h"

#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>

namespace KestrinMIDI {

namespace {

std::optional<CFStringUnits> UnitsOfASCII(std::span<const UInt8> bytes) {
    if (std::any_of(bytes.begin(), bytes.end(), [](UInt8 byte) { return byte > 0x7F; }))
        return std::nullopt;
    return CFStringUnits(bytes.begin(), bytes.end());
}

std::optional<CFStringUnits> UnitsOfUTF8(std::span<const UInt8> bytes) {
    CFStringUnits units;
    units.reserve(bytes.size());
    const auto count = static_cast<std::ptrdiff_t>(bytes.size());
    for (std::ptrdiff_t at = 0; at < count;) {
        UChar32 character = 0;
        U8_NEXT(bytes, at, count, character);
        if (character < 0)
            return std::nullopt;
        if (U_IS_BMP(character)) {
            units.push_back(static_cast<UniChar>(character));
        } else {
            units.push_back(U16_LEAD(character));
            units.push_back(U16_TRAIL(character));
        }
    }
    return units;
}

/// One character in an encoding; no bytes when the encoding cannot express it.
struct EncodedCharacter {
    UInt8 bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
};

EncodedCharacter Encode(UChar32 character, CFStringEncoding encoding) {
    EncodedCharacter encoded;
    if (encoding == kCFStringEncodingUTF8 && !U_IS_SURROGATE(character))
        U8_APPEND_UNSAFE(encoded.bytes, encoded.length, character);
    else if (encoding == kCFStringEncodingASCII && character < 0x80)
        encoded.bytes[encoded.length++] = static_cast<UInt8>(character);
    return encoded;
}

bool IsOffered(CFStringEncoding encoding) {
    return encoding == kCFStringEncodingUTF8 || encoding == kCFStringEncodingASCII;
}

} // namespace

std::optional<CFStringUnits> UnitsOfBytes(std::span<const UInt8> bytes, CFStringEncoding encoding) {
    switch (encoding) {
    case kCFStringEncodingUTF8:
        return UnitsOfUTF8(bytes);
    case kCFStringEncodingASCII:
        return UnitsOfASCII(bytes);
    default:
        return std::nullopt;
    }
}

bool ByteSink::Take(std::span<const UInt8> bytes) {
    if (fBuffer) {
        if (bytes.size() > fCapacity - fUsed)
            return false;
        std::memcpy(fBuffer + fUsed, bytes.data(), bytes.size());
    }
    fUsed += bytes.size();
    return true;
}

std::size_t WriteUnitsAsBytes(std::span<const UniChar> units, CFStringEncoding encoding,
                              UInt8 lossByte, ByteSink& sink) {
    std::size_t converted = 0;
    while (IsOffered(encoding) && converted < units.size()) {
        std::size_t next = converted;
        UChar32 character = 0;
        U16_NEXT(units, next, units.size(), character);
        EncodedCharacter encoded = Encode(character, encoding);
        if (encoded.length == 0 && lossByte != 0)
            encoded.bytes[encoded.length++] = lossByte;
        if (encoded.length == 0 || !sink.Take({encoded.bytes, encoded.length}))
            break;
        converted = next;
    }
    return converted;
}

} // namespace KestrinMIDI
