#pragma once

#include <CoreMIDI/CoreMIDI.h>

#include <optional>
#include <string>
#include <vector>

namespace MidiSetup {

struct Endpoint {
    MIDIEndpointRef reference = 0;
    MIDIUniqueID id = 0;
    std::string name;
    bool isSource = false;
    bool isOffline = false;
};

struct Entity {
    MIDIEntityRef reference = 0;
    MIDIUniqueID id = 0;
    std::string name;
    std::vector<Endpoint> sources;
    std::vector<Endpoint> destinations;
};

enum class DeviceKind {
    kCard,      ///< the system's sequencer offers it, or did when it was last plugged in
    kInterface, ///< added by a person, without a driver
    kExternal,  ///< cabled to a port of another device
};

struct Device {
    MIDIDeviceRef reference = 0;
    MIDIUniqueID id = 0;
    DeviceKind kind = DeviceKind::kCard;
    std::string name;
    bool isOffline = false;
    std::vector<Entity> entities;
};

/// All that the MIDI service knows, at one moment.
struct Studio {
    std::vector<Device> devices; ///< in the service's order, external devices last
    std::vector<Endpoint> programEndpoints;
};

/// Reads the studio. Throws Failure, with the reason, when the database cannot be used.
Studio ReadStudio();

/// Throws Failure, with the reason, when the database cannot be used.
void RequireDatabase();

/// "card", "interface", "external".
const char* KindName(DeviceKind kind);

struct GroupSettings {
    std::optional<SInt32> group;
    std::optional<SInt32> position;
};

/// What is stored of the group settings, without giving defaults to a surface that has none.
GroupSettings StoredSettings(MIDIObjectRef object);

/// Whether the device is a surface, or one of its ports is.
bool IsSurface(const Device& device);

} // namespace MidiSetup
