#pragma once

#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"
#include "Platform/CoreMIDI/Store/ObjectStore.h"

#include <vector>

namespace KestrinMIDI {

/// Where a card is on this machine, as live properties of its device. What the card lacks is left
/// out.
std::vector<StoredProperty> WhereaboutsOf(const SoundCard& card);

/// Where a port is, as live properties of its entity, or of a program's endpoint.
std::vector<StoredProperty> WhereaboutsOf(const SequencerClient& client, const SequencerPort& port);

} // namespace KestrinMIDI
