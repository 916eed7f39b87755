#pragma once

#include "Strings/UTraits.h"

#include <cstddef>
#include <string>

/// The transcoders written down once more, one character at a time and with no thought of speed:
/// what the fast ones are measured by.
namespace Plain {

struct Utf16Result {
    UTF16String units;
    std::size_t consumed = 0;
};

struct Utf8Result {
    std::string bytes;
    std::size_t consumed = 0;
};

struct Utf32Result {
    UTF32String values;
    std::size_t consumed = 0;
};

Utf16Result Utf8ToUtf16(const unsigned char* source, std::size_t count);
Utf8Result Utf16ToUtf8(const unsigned short* source, std::size_t count);
Utf32Result Utf16ToUtf32(const unsigned short* source, std::size_t count);

} // namespace Plain
