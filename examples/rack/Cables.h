#pragma once

#include "examples/rack/MessageSplitter.h"

#include <poll.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// Where the rack's units are plugged in, one cable for each unit in the order of the rack.
class Cables {
public:
    using Receiver = std::function<void(std::size_t unit, std::span<const std::uint8_t> bytes)>;

    virtual ~Cables() = default;

    /// What poll waits for.
    virtual std::vector<pollfd> Descriptors() const = 0;
    /// Hands over what has come, without waiting. False when a cable was pulled out.
    virtual bool Receive(const Receiver& receiver) = 0;
    /// Sends one whole message.
    virtual void Send(std::size_t unit, const MidiBytes& message) = 0;
};

/// Ports of one sequencer client of the given name, called after the units. Throws a sentence
/// (std::runtime_error) where there is no sequencer.
std::unique_ptr<Cables> MakeProgramPorts(const std::string& client,
                                         const std::vector<std::string>& names);

/// Raw MIDI devices ("hw:1,0"), such as the far ends of emulated USB cables. Throws a sentence
/// where one cannot be opened.
std::unique_ptr<Cables> OpenRawDevices(const std::vector<std::string>& devices);
