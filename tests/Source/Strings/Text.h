#pragma once

#include "Strings/UString.h"

#include <gtest/gtest.h>

/// Text of the given units.
inline UString Units(std::initializer_list<unsigned short> units) {
    return UString(UTF16String(units));
}
