#pragma once

#include <CoreMIDI/CoreMIDI.h>

#include <optional>
#include <string>
#include <vector>

namespace SurfacePorts {

/// A port of the sequencer.
struct Address {
    int client = -1;
    int port = -1;
    bool operator==(const Address&) const = default;
};

/// A surface that has a place in a group.
struct Unit {
    MIDIUniqueID id = 0;
    std::string name;
    std::optional<Address> from; ///< where its events come from; nothing while it is unplugged
    std::optional<Address> to;   ///< where it takes events
};

struct Group {
    SInt32 number = 0;
    std::vector<Unit> units; ///< in the order of their positions
};

/// The groups that have a surface, by number.
using Plan = std::vector<Group>;

/// What the MIDI service knows of surfaces with a place, plugged in or not. Nothing where the
/// database can't be used.
std::optional<Plan> ReadPlan();

} // namespace SurfacePorts
