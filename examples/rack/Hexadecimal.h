#pragma once

#include "examples/rack/MessageSplitter.h"

#include <string>

/// Two digits for each byte, "F07E".
std::string Hexadecimal(std::span<const std::uint8_t> bytes);

/// The bytes of such a text, in letters of either case; nothing where it is none.
MidiBytes FromHexadecimal(const std::string& digits);
