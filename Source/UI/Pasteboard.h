#pragma once

#include "Strings/UString.h"

#include <map>
#include <vector>

namespace Kestrin {

/// What is dragged over a view: by the names of the types it comes in, as text or as raw data.
struct Pasteboard {
    std::map<UString, UString> strings;
    std::map<UString, std::vector<unsigned char>> data;
};

} // namespace Kestrin
