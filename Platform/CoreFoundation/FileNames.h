#pragma once

#include <CoreFoundation/CFString.h>

#include <string>
#include <string_view>
#include <vector>

namespace KestrinMIDI {

/// The UTF-16 units of a file name or path. A byte that is not part of any UTF-8 sequence becomes
/// the unit 0xDC00 + byte, so that each name has a text of its own.
std::vector<UniChar> UnitsOfFileName(std::string_view bytes);

/// The bytes that UnitsOfFileName made the string's units from.
std::string FileNameOf(CFStringRef string);

} // namespace KestrinMIDI
