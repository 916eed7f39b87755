#pragma once

#include <string>

class UString;

namespace Kestrin {

/// Text as the native objects are given it: its UTF-8 bytes, but no more of them than the text has
/// UTF-16 units, and never a part of a character. Text beyond ASCII so comes out cut short.
std::string HandOver(const UString& text);

/// The whole text in standard UTF-16, with as many units as the text: the framework's own surrogate
/// pairs become the standard ones of the same character.
std::u16string StandardText(const UString& text);

} // namespace Kestrin
