#pragma once

#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"
#include "Platform/CoreMIDI/Store/ObjectStore.h"

#include <string>
#include <vector>

namespace KestrinMIDI {

// What a snapshot means: the devices with their ports, and the programs' endpoints, named and with
// their identities.

struct LivePort {
    int place = 0; ///< on the device, from 1
    std::string name;
    bool isSource = false;
    bool isDestination = false;
    std::vector<StoredProperty> whereabouts;
};

struct LiveDevice {
    HardwareRecord record; ///< its `name` is the model
    std::string driver;
    std::vector<LivePort> ports;
    std::vector<StoredProperty> whereabouts;
};

struct LiveEndpoint {
    HardwareRecord record;
    MIDIObjectType type = kMIDIObjectType_Source;
    std::vector<StoredProperty> whereabouts;
};

struct LiveStudio {
    std::vector<LiveDevice> devices;     ///< in the order of their cards
    std::vector<LiveEndpoint> endpoints; ///< of programs, in the order of their clients
};

/// Leaves out the kernel's own clients that belong to no card (System, Midi Through), the client
/// that took the snapshot, and programs that keep their ports from becoming objects. A card without
/// ports is no device.
LiveStudio StudioOf(const SequencerSnapshot& snapshot);

} // namespace KestrinMIDI
