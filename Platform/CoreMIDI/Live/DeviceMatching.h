#pragma once

#include "Platform/CoreMIDI/Store/ObjectStore.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace KestrinMIDI {

/// Says which known unit each live one is: for each of `live` an index into `known`, or nothing for
/// a new one. No known unit serves twice.
///
/// Units of one kind and serial are told apart, in this order, by: the same texts (manufacturer and
/// name) at the same place; the same texts elsewhere, where one known and one live unit of them are
/// left; the same place, or else the last known and the last live unit left over, where one of the
/// texts still agrees. So of two equal units the one that was moved is found again, a unit with new
/// firmware is itself, and a stranger is new.
std::vector<std::optional<std::size_t>> MatchUnits(const std::vector<HardwareRecord>& known,
                                                   const std::vector<HardwareRecord>& live);

} // namespace KestrinMIDI
