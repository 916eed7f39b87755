#include "tools/midisetup/Diagnosis.h"

#include "Surfaces/SurfaceDiscovery.h"

#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Output.h"

#include <map>
#include <unordered_map>

namespace MidiSetup {

namespace {

/// By which ways a device is reached.
struct Reach {
    bool bySource = false;
    bool byDestination = false;
    bool byCable = false; ///< by any cable, also to a port that is unplugged now
};

using ReachOfDevices = std::unordered_map<MIDIUniqueID, Reach>;

bool IsDirection(const NamedObject& object) {
    return object.kind == "source" || object.kind == "destination";
}

Reach& ReachOf(ReachOfDevices& reach, MIDIUniqueID id, const ObjectNames& names) {
    const NamedObject* object = names.WithID(id);
    const bool hasDevice = object != nullptr && object->device != nullptr;
    return reach[hasDevice ? object->device->id : id];
}

/// The surface that the program sees at an endpoint.
MIDIUniqueID SurfaceAt(MIDIEndpointRef endpoint) {
    const MIDIUniqueID own = IsEndpointAVirtualMIDIPort(endpoint);
    return own != 0 ? own : IsDeviceAttachedToEndpoint(endpoint);
}

void FollowPresentEndpoints(ReachOfDevices& reach, const ObjectNames& names) {
    const ItemCount sources = MIDIGetNumberOfSources();
    for (ItemCount i = 0; i < sources; ++i) {
        if (const MIDIUniqueID id = SurfaceAt(MIDIGetSource(i)); id != 0)
            ReachOf(reach, id, names).bySource = true;
    }
    const ItemCount destinations = MIDIGetNumberOfDestinations();
    for (ItemCount i = 0; i < destinations; ++i) {
        if (const MIDIUniqueID id = SurfaceAt(MIDIGetDestination(i)); id != 0)
            ReachOf(reach, id, names).byDestination = true;
    }
}

void FollowCables(ReachOfDevices& reach, const ObjectNames& names) {
    for (const NamedObject& object : names.All()) {
        if (!IsDirection(object))
            continue;
        for (const MIDIUniqueID id : ConnectionsOf(object.reference))
            ReachOf(reach, id, names).byCable = true;
    }
}

Problem OneWay(const std::string& name, bool isHeard) {
    return {name + (isHeard ? " is connected to an input only; nothing can be sent to it."
                            : " is connected to an output only; nothing can be received from it."),
            "Connect it in both directions: midisetup connect PORT \"" + name + "\""};
}

Problem Uncabled(const std::string& name) {
    return {name + " is connected to no port, so that no program can find it.",
            "Tell where it is plugged: midisetup connect PORT \"" + name + "\""};
}

std::optional<Problem> ProblemOf(const Device& device, const Reach& reach) {
    const std::string name = Printable(device.name);
    if (reach.bySource != reach.byDestination)
        return OneWay(name, reach.bySource);
    if (reach.bySource || device.kind != DeviceKind::kExternal || !IsSurface(device))
        return std::nullopt;
    return reach.byCable ? std::nullopt : std::optional(Uncabled(name));
}

} // namespace

std::vector<Problem> FindLooseCables(const ObjectNames& names) {
    std::vector<Problem> problems;
    for (const NamedObject& object : names.All()) {
        if (!IsDirection(object))
            continue;
        for (const MIDIUniqueID id : ConnectionsOf(object.reference)) {
            if (names.WithID(id) == nullptr)
                problems.push_back(
                    {Printable(object.path) + " is connected to " + names.Describe(id) + ".",
                     "Take it off: midisetup disconnect " + std::to_string(object.id)});
        }
    }
    return problems;
}

std::vector<Problem> FindUnreachableSurfaces(const Studio& studio, const ObjectNames& names) {
    ReachOfDevices reach;
    FollowPresentEndpoints(reach, names);
    FollowCables(reach, names);
    std::vector<Problem> problems;
    for (const Device& device : studio.devices) {
        if (auto problem = ProblemOf(device, reach[device.id]))
            problems.push_back(*std::move(problem));
    }
    return problems;
}

std::vector<Problem> FindSharedPlaces(const Studio& studio) {
    std::map<std::pair<SInt32, SInt32>, std::vector<std::string>> places;
    for (const Device& device : studio.devices) {
        const GroupSettings settings = StoredSettings(device.reference);
        if (settings.group && settings.position && IsSurface(device))
            places[{*settings.group, *settings.position}].push_back(Printable(device.name));
    }
    std::vector<Problem> problems;
    for (const auto& [place, surfaces] : places) {
        if (surfaces.size() < 2)
            continue;
        std::string list;
        for (const std::string& surface : surfaces)
            list += (list.empty() ? "" : ", ") + surface;
        problems.push_back({list + " have the same group " + std::to_string(place.first) +
                                " and position " + std::to_string(place.second) + ".",
                            "Give each a position of its own in Sorvex Mackie Setup."});
    }
    return problems;
}

} // namespace MidiSetup
