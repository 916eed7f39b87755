#include "Platform/CoreFoundation/Text.h"

#include <unicode/ustring.h>

#include <vector>

namespace KestrinMIDI {

namespace {

constexpr UChar32 kReplacement = 0xFFFD;

std::string Utf8FromUtf16(const UChar* units, std::size_t count) {
    // A unit takes three bytes at most; a pair takes four.
    std::string utf8(count * 3, '\0');
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8WithSub(utf8.data(), static_cast<std::int32_t>(utf8.size()), &length, units,
                       static_cast<std::int32_t>(count), kReplacement, nullptr, &error);
    utf8.resize(length);
    return utf8;
}

} // namespace

std::string Utf8Of(CFStringRef string) {
    if (!string)
        return {};
    const CFIndex count = CFStringGetLength(string);
    std::vector<UniChar> units(count);
    CFStringGetCharacters(string, CFRangeMake(0, count), units.data());
    return Utf8FromUtf16(reinterpret_cast<const UChar*>(units.data()), units.size());
}

CFStringRef MakeString(std::string_view utf8) {
    std::vector<UChar> units(utf8.size());
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units.data(), static_cast<std::int32_t>(units.size()), &length,
                         utf8.data(), static_cast<std::int32_t>(utf8.size()), kReplacement, nullptr,
                         &error);
    return CFStringCreateWithCharacters(nullptr, reinterpret_cast<const UniChar*>(units.data()),
                                        length);
}

CFDataRef MakeData(std::string_view bytes) {
    return CFDataCreate(nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
                        static_cast<CFIndex>(bytes.size()));
}

std::string_view BytesOf(CFDataRef data) {
    return {reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
            static_cast<std::size_t>(CFDataGetLength(data))};
}

} // namespace KestrinMIDI
