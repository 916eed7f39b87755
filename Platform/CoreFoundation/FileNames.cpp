#include "Platform/CoreFoundation/FileNames.h"

#include "Platform/CoreFoundation/CFObject.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstring>

namespace KestrinMIDI {

namespace {

constexpr UniChar kStrayByte = 0xDC00;

bool IsStrayByte(UChar32 character) {
    return character >= kStrayByte + 0x80 && character <= kStrayByte + 0xFF;
}

void AppendUnits(UChar32 character, std::vector<UniChar>& units) {
    if (U_IS_BMP(character)) {
        units.push_back(static_cast<UniChar>(character));
        return;
    }
    units.push_back(U16_LEAD(character));
    units.push_back(U16_TRAIL(character));
}

void AppendBytes(UChar32 character, std::string& bytes) {
    if (IsStrayByte(character)) {
        bytes += static_cast<char>(character - kStrayByte);
        return;
    }
    char encoded[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(encoded, length, character);
    bytes.append(encoded, length);
}

} // namespace

std::vector<UniChar> UnitsOfFileName(std::string_view bytes) {
    std::vector<UniChar> units;
    units.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        std::size_t next = at;
        UChar32 character = 0;
        U8_NEXT(bytes, next, bytes.size(), character);
        if (character < 0) {
            character = kStrayByte + static_cast<unsigned char>(bytes[at]);
            next = at + 1;
        }
        AppendUnits(character, units);
        at = next;
    }
    return units;
}

std::string FileNameOf(CFStringRef string) {
    std::vector<UniChar> units(static_cast<std::size_t>(CFStringGetLength(string)));
    CFStringGetCharacters(string, CFRangeMake(0, static_cast<CFIndex>(units.size())), units.data());
    std::string bytes;
    bytes.reserve(units.size());
    for (std::size_t at = 0; at < units.size();) {
        UChar32 character = 0;
        U16_NEXT(units, at, units.size(), character);
        AppendBytes(character, bytes);
    }
    return bytes;
}

} // namespace KestrinMIDI

using namespace KestrinMIDI;

CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef allocator, const char* path) {
    return OrNothing([=] {
        const std::vector<UniChar> units = UnitsOfFileName(path);
        return CFStringCreateWithCharacters(allocator, units.data(),
                                            static_cast<CFIndex>(units.size()));
    });
}

Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex capacity) {
    return OrNothing([=]() -> Boolean {
        const std::string bytes = FileNameOf(string);
        if (static_cast<CFIndex>(bytes.size()) >= capacity || bytes.find('\0') != std::string::npos)
            return false;
        std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
        return true;
    });
}
