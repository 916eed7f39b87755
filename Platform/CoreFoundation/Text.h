#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>

namespace KestrinMIDI {

/// UTF-8 of a string; halves of a pair that stand alone become U+FFFD. Null is the empty text.
std::string Utf8Of(CFStringRef string);

/// Bytes that are not valid UTF-8 become U+FFFD. The caller owns the result.
CFStringRef MakeString(std::string_view utf8);

/// The caller owns the result.
CFDataRef MakeData(std::string_view bytes);

/// Valid for as long as the data lives.
std::string_view BytesOf(CFDataRef data);

} // namespace KestrinMIDI
