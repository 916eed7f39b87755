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

/// What a transcoder makes of a text, in place of one that was there before.
template <typename Text, typename Unit>
Result<Text> ResultOf(std::size_t (&transcode)(const Unit*, std::size_t, Text&), const Unit* source,
                      std::size_t count) {
    Result<Text> result{Text(3, 'x')};
    result.consumed = transcode(source, count, result.text);
    return result;
}

Result<UTF16String> Utf8ToUtf16(const unsigned char* source, std::size_t count);
Result<std::string> Utf16ToUtf8(const unsigned short* source, std::size_t count);
Result<UTF32String> Utf16ToUtf32(const unsigned short* source, std::size_t count);

} // namespace Plain
