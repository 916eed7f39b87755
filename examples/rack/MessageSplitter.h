#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

using MidiBytes = std::vector<std::uint8_t>;

/// Cuts a stream of MIDI 1.0 bytes into whole messages, wherever the pieces it comes in end:
/// running status gets its status byte back, real-time bytes inside another message come out before
/// it.
class MessageSplitter {
public:
    using Receiver = std::function<void(const MidiBytes& message)>;

    void Take(std::span<const std::uint8_t> bytes, const Receiver& receiver);

private:
    void TakeByte(std::uint8_t byte, const Receiver& receiver);

    MidiBytes fMessage; ///< what has come of the message so far
};
