#pragma once

#include "Strings/UTraits.h"

#include <cstddef>
#include <string>

/// The transcoders written down once more, one character at a time and with no thought of speed:
/// what the fast ones are measured by.
namespace Plain {

template <typename Text>
struct Result {
    Text text;
    std::size_t consumed = 0;
    bool operator==(const Result&) const = default;
};

Result<UTF16String> Utf8ToUtf16(const unsigned char* source, std::size_t count);
Result<std::string> Utf16ToUtf8(const unsigned short* source, std::size_t count);
Result<UTF32String> Utf16ToUtf32(const unsigned short* source, std::size_t count);

} // namespace Plain
