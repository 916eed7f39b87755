#pragma once

#include "tools/surface-ports/SurfacePlan.h"

#include <string>
#include <vector>

namespace SurfacePorts {

enum class Direction { FromUnit, ToUnit };

enum class LinkState {
    Linked,
    Held, ///< another program has the unit, which can't be shared
    Gone, ///< it is not there
};

/// Where the events of one port go, and come from.
struct Route {
    SInt32 group = 0;
    int port = 0;
    MIDIUniqueID unit = 0;
};

/// What surface ports ask of the sequencer: a client with ports for each group, which mixers see
/// and connect to, a link to each unit, and that events pass between the two as the routes tell.
class Sequencer {
public:
    virtual ~Sequencer() = default;

    // The mixers' side. A port keeps its number and what it is connected to for as long as it is
    // open. False where the sequencer has no room.

    virtual bool OpenGroup(SInt32 group, const std::string& name) = 0;
    virtual void CloseGroup(SInt32 group) = 0;
    /// `port` is the first number that is not open.
    virtual bool OpenPort(SInt32 group, int port, const std::string& name) = 0;
    virtual void RenamePort(SInt32 group, int port, const std::string& name) = 0;
    virtual void ClosePort(SInt32 group, int port) = 0;

    // The units' side

    /// Links a direction of the unit to the address, and to no other. To be called again where the
    /// unit may have been gone in between; a link that stands, stays.
    virtual LinkState Link(MIDIUniqueID unit, Direction direction, const Address& address) = 0;
    virtual void Unlink(MIDIUniqueID unit, Direction direction) = 0;
    virtual void Forget(MIDIUniqueID unit) = 0;

    /// Replaces all routes at once.
    virtual void SetRoutes(const std::vector<Route>& routes) = 0;
};

} // namespace SurfacePorts
