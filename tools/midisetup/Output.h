#pragma once

#include <string>
#include <string_view>

namespace MidiSetup {

/// The text with everything that is not a visible character (control characters, marks that turn
/// the reading direction or have no width, bytes that are no UTF-8) written as an escape, so that
/// no name can disturb a terminal or feign another line.
std::string Escaped(std::string_view text);

/// The same, isolated where it reads from right to left: for joining with other texts.
std::string Printable(std::string_view text);

/// The same between the quotation marks of the user's language.
std::string Quoted(std::string_view text);

/// JSON, with such characters in its strings written as JSON escapes them.
std::string EscapedJson(std::string_view json);

/// How many columns of a terminal the text takes.
std::size_t Columns(std::string_view text);

/// Of the letters A to Z.
std::string LowerCase(std::string_view text);

/// The text emphasised or toned down on standard output, if that is a terminal that may show colour
/// (NO_COLOR unset or empty); else the text alone.
std::string Strong(const std::string& text);
std::string Faint(const std::string& text);

} // namespace MidiSetup
