#pragma once

#include "Platform/CoreMIDI/Store/ObjectStore.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace KestrinMIDI {

/// Says which known unit each live one is: for each of `live` an index into `known`, or nothing for
/// a new one. No known unit serves twice.
///
/// Units are alike when kind and serial are equal. A unit that has no like, neither among the known
/// nor among the live ones, is itself wherever it is plugged in. Among several alike the place
/// decides; one at a place where none of them was is new, since nothing tells which of them it
/// might be.
std::vector<std::optional<std::size_t>> MatchUnits(const std::vector<HardwareRecord>& known,
                                                   const std::vector<HardwareRecord>& live);

} // namespace KestrinMIDI
