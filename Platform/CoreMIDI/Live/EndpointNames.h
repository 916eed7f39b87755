#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace KestrinMIDI {

/// Valid UTF-8 for any bytes: a character that was cut off at the end is dropped, other ill-formed
/// bytes become U+FFFD, control characters become blanks, and blanks at both ends are dropped.
std::string CleanName(std::string_view bytes);

/// The name that the jack itself has, or the empty text: what is left of the port's name behind the
/// unit's, unless that is the kernel's own "MIDI n" or the part of it for which 31 bytes had room.
/// `unitName` is the name that the kernel made the port's name from.
std::string JackName(std::string_view unitName, std::string_view portName);

/// "Port 1", or "Port 1 (Main)" with a jack's own name.
std::string PortName(int place, const std::string& jackName);

/// A program's endpoint: the port's name, with the client's before it where it doesn't hold that.
std::string ProgramEndpointName(const std::string& clientName, const std::string& portName);

/// The name itself, or with the first of " 2", " 3" … that makes it one nobody has.
std::string DistinctName(const std::string& name,
                         const std::function<bool(const std::string&)>& isTaken);

/// Whether `name` is what DistinctName may have made of `wanted`.
bool IsDistinctNameOf(std::string_view name, std::string_view wanted);

} // namespace KestrinMIDI
