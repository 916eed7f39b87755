#pragma once

#include "Strings/UString.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>

/// An ASCII literal as text.
inline UString operator""_u(const char* text, std::size_t length) {
    return UString(std::string(text, length), UString::kASCII);
}

/// Text of the given units.
inline UString Units(std::initializer_list<unsigned short> units) {
    return UString(UTF16String(units));
}

/// How a failed expectation shows a text.
inline void PrintTo(const UString& text, std::ostream* stream) {
    *stream << '"' << text.string(UString::kASCII, '?', false) << '"' << std::hex;
    for (const unsigned short unit : text)
        *stream << ' ' << unit;
    *stream << std::dec;
}
