#pragma once

#include "Strings/UString.h"

#include <gtest/gtest.h>

/// An ASCII literal as text.
inline UString operator""_u(const char* text, std::size_t length) {
    return UString(std::string(text, length), UString::kASCII);
}

/// Text of the given units.
inline UString Units(std::initializer_list<unsigned short> units) {
    return UString(UTF16String(units));
}
