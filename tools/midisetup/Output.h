#pragma once

#include "tools/messages/PrintableText.h"

#include <string>
#include <string_view>

namespace MidiSetup {

/// The text, printable, between the quotation marks of the user's language.
std::string Quoted(std::string_view text);

/// Of the letters A to Z.
std::string LowerCase(std::string_view text);

/// The text emphasised or toned down on standard output, if that is a terminal that may show colour
/// (NO_COLOR unset or empty); else the text alone.
std::string Strong(const std::string& text);
std::string Faint(const std::string& text);

} // namespace MidiSetup
