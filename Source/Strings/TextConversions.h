#pragma once

#include "Strings/UString.h"

// Numbers, four-character codes and raw bytes as text. All follow the C locale whatever the process
// has set, and none fails: text that cannot be read gives the value named.

/// The base of an integer's text. Any value other than 0 counts as decimal.
enum NumFormat : int { kHexFormat = 0, kDecimalFormat = 1 };

/// Decimal with a leading minus where negative; hexadecimal in lower case, without prefix or
/// padding, a negative value as its 64-bit two's complement.
UString NumToUString(long value, NumFormat format);

/// The number that the text begins with, after white space; what follows it is ignored. Hexadecimal
/// may have a 0x. No number gives 0, one that does not fit the largest or smallest long.
long UStringToNum(const UString& text, NumFormat format);

/// A whole number without a point, any other with six digits behind it.
UString DoubleToUStringPrecise(double value);

/// The number that the text begins with, as read by strtod; 0.0 when there is none.
double UStringToDouble(const UString& text);

/// Whether all units are digits 0 to 9, which holds for the empty text too.
bool IsNumeric(const UString& text);

/// 'XSET' and its like: the first character in the most significant byte.
constexpr unsigned int FourCharCode(const char (&text)[5]) {
    unsigned int code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

/// The code's bytes, the most significant first, as units of the same value up to the first 0 byte.
UString OSTypeToUString(unsigned int code);

/// The low bytes of the first four units; units that are missing count as 0.
unsigned int UStringToOSType(const UString& text);

/// Decodes pairs of hexadecimal digits into bytes; units that are none are skipped wherever they
/// stand. Only the low byte of a unit is looked at. At most `capacity` bytes are written; the rest
/// of the buffer stays as it was.
void UStringToRawData(const UString& text, unsigned char* out, unsigned int capacity);
