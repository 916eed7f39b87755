#pragma once

#include "Strings/UTraits.h"

// Text from one encoding to another. Each function replaces the content of `out` (`Append…` adds to
// it) and answers how much of the input it consumed, in elements of the input. None throws on bad
// input or writes anything for it: conversion ends before the first ill-formed element, and what
// was converted until then stays. Input may be of any length, null when the length is 0, and stand
// at any address.
//
// The surrogates of this system are its own. A unit 0xDB00 to 0xDBFF is a high one, 0xDC00 to
// 0xDCFF a low one, every other unit an ordinary character; a pair (h, l) stands for (h << 10) + l
// - 0x36BDC00, so that 0xDB00 0xDC00 is U+10000. Values from U+50000 on are written with high units
// that are read as lone low ones; text relies on that.

/// Reads UTF-8 bytes. Sequences are those of the standard, save that encoded surrogates are
/// ordinary characters and that the second byte after 0xF4 has no lower bound.
std::size_t utf8_to_utf16(const unsigned char* source, std::size_t count, UTF16String& out);

/// Writes UTF-8 bytes. A surrogate without its partner ends the conversion.
std::size_t utf16_to_utf8(const unsigned short* source, std::size_t count, std::string& out);

/// Writes UTF-32 values. A surrogate without its partner ends the conversion.
std::size_t utf16_to_utf32(const unsigned short* source, std::size_t count, UTF32String& out);

/// Appends one unit, or two from U+10000 on. A value past U+10FFFF becomes the unit 0xFEFF.
void AppendUtf32CharToUtf16(UTF16String& out, unsigned int value);

/// Mac Roman goes through the platform's converter; the count is what it reports as consumed. Both
/// may be called from any thread.
std::size_t MacRoman_to_utf16(const unsigned char* source, std::size_t count, UTF16String& out);

/// A character that Mac Roman lacks becomes a question mark.
std::size_t utf16_to_MacRoman(const unsigned short* source, std::size_t count, std::string& out);
