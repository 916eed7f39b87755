#pragma once

#include <cstdint>
#include <string>

/// A sequencer in this process's memory, for machines without one. It stands in the place of those
/// functions of the ALSA library that surface ports ask the kernel's by. Units and mixers are the
/// clients that nobody opened; a mixer listens to every port that may be read.
namespace MemorySequencer {

/// A unit at this place sends a fader's move to whoever is linked to it.
void SendFromUnit(int client, int position);

/// A mixer sends one to a port of the client of that name.
void SendFromMixer(const std::string& client, int port, int position);

/// Waits until all that was sent has been passed on or dropped.
void Settle();

/// How many events units and mixers have heard.
std::uint64_t Heard();

/// Ends all links of the unit at this place.
void PullOut(int client);

} // namespace MemorySequencer
