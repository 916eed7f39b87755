#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts that units, programs and people chose, as a terminal may get them.

/// The text with everything that is not a visible character (control characters, marks that turn
/// the reading direction or have no width, bytes that are no UTF-8) written as an escape, so that
/// no name can disturb a terminal or feign another line.
std::string Escaped(std::string_view text);

/// The same, isolated where it reads from right to left: for joining with other texts.
std::string Printable(std::string_view text);

/// JSON, with such characters in its strings written as JSON escapes them.
std::string EscapedJson(std::string_view json);

/// How many columns of a terminal the text takes.
std::size_t Columns(std::string_view text);
