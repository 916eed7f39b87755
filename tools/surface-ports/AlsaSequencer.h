#pragma once

#include "tools/surface-ports/Sequencer.h"

#include <memory>

namespace SurfacePorts {

/// The machine's own sequencer, with a thread of its own in which events pass. Null where it can't
/// be opened.
std::unique_ptr<Sequencer> OpenSequencer();

/// A port that is open in the sequencer now, and the clients that are connected to it.
struct OpenPort {
    std::string client;
    Address address;
    std::string name;
    std::vector<std::string> connected;
};

/// The ports of a running instance, by whichever process.
std::vector<OpenPort> OpenPorts();

} // namespace SurfacePorts
