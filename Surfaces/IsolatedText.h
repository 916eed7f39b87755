#pragma once

#include <cstddef>
#include <string>

/// The text, UTF-8, as it may be joined with others for showing: where it has characters that are
/// written from right to left, or marks that turn the direction, it is put between U+2068 and
/// U+2069, so that it turns round nothing but itself. Never for texts that are stored.
std::string Isolated(const std::string& utf8);

/// As many whole characters of the text, UTF-8, as `most` bytes hold.
std::string CutToBytes(std::string utf8, std::size_t most);
