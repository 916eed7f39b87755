#pragma once

#include <alsa/asoundlib.h>

#include <functional>
#include <string>
#include <utility>

/// A sequencer in this process's memory, for machines without one. It stands in the place of those
/// functions of the ALSA library that surface ports ask the kernel's by. Units and mixers are the
/// clients that nobody opened; each port that may be read has a mixer's port that listens to it.
/// An event of the type SND_SEQ_EVENT_NONE is read as the error that tells of lost ones.
namespace MemorySequencer {

using Place = std::pair<int, int>; // a client's number and a port of it

struct Event {
    snd_seq_event_t head{};
    std::string bytes; ///< of one of variable length
};

constexpr int kMixer = 250;

/// The mixer's port that listens to a port.
Place ListenerTo(const Place& port);

/// The number of the client of that name, or 0.
int ClientNamed(const std::string& name);

/// Lets the place hear what comes out of the port, too.
void Connect(const Place& port, const Place& place);

/// What comes out of a port of a unit or a mixer, to whoever is connected to it.
void Emit(const Place& port, Event event);

/// What a mixer sends to a port.
void Send(const Place& port, Event event);

/// Waits until all that was sent has been passed on or dropped.
void Settle();

/// Is told what units and mixers hear, by one thread at a time.
using Hearing = std::function<void(const Place& place, const Event& event)>;
void Hear(Hearing hearing);

/// Ends all links of the unit at this place.
void PullOut(int client);

} // namespace MemorySequencer
