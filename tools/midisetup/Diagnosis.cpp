#include "tools/midisetup/Diagnosis.h"

#include "Surfaces/SurfaceDiscovery.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Json.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/SurfaceHints.h"

#include <CoreMIDI/MIDIDatabase.h>

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

Problem OneWay(const std::string& name, const std::string& word, bool isHeard) {
    return {isHeard ? Message("%1 is connected to an input only; nothing can be sent to it.", name)
                    : Message("%1 is connected to an output only; nothing can be received from it.",
                              name),
            Message("Connect it in both directions: %1", "midisetup connect PORT " + word)};
}

Problem Uncabled(const std::string& name, const std::string& word) {
    return {Message("%1 is connected to no port, so that no program can find it.", name),
            Message("Tell where it is plugged: %1", "midisetup connect PORT " + word)};
}

std::optional<Problem> ProblemOf(const Device& device, const Reach& reach,
                                 const std::string& word) {
    const std::string name = Printable(device.name);
    if (reach.bySource != reach.byDestination)
        return OneWay(name, word, reach.bySource);
    if (reach.bySource || device.kind != DeviceKind::kExternal || !IsSurface(device))
        return std::nullopt;
    return reach.byCable ? std::nullopt : std::optional(Uncabled(name, word));
}

std::string NamesOf(const std::vector<const Device*>& devices) {
    std::string list;
    for (const Device* const device : devices)
        list = Listed(list, Printable(device->name));
    return list;
}

std::string PlaceCommand(const std::string& word, const std::string& group) {
    return "midisetup place " + word + " " + group + " POSITION";
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
                    {Message("%1 is connected to %2.", Printable(object.path), names.Describe(id)),
                     Message("Take it off: %1",
                             "midisetup disconnect " + std::to_string(object.id))});
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
        if (auto problem = ProblemOf(device, reach[device.id], names.Word(device.id)))
            problems.push_back(*std::move(problem));
    }
    return problems;
}

std::vector<Problem> FindSharedPlaces(const Studio& studio, const ObjectNames& names) {
    std::map<std::pair<SInt32, SInt32>, std::vector<const Device*>> places;
    for (const Device& device : studio.devices) {
        const GroupSettings settings = StoredSettings(device.reference);
        if (settings.group && settings.position && IsSurface(device))
            places[{*settings.group, *settings.position}].push_back(&device);
    }
    std::vector<Problem> problems;
    for (const auto& [place, surfaces] : places) {
        const std::string group = std::to_string(place.first);
        if (surfaces.size() > 1)
            problems.push_back({Message("%1 have the same group %2 and position %3.",
                                        NamesOf(surfaces), group, place.second),
                                Message("Give each a position of its own, as in: %1",
                                        PlaceCommand(names.Word(surfaces.back()->id), group))});
    }
    return problems;
}

std::vector<Problem> FindWrongSettings(const ObjectNames& names) {
    std::vector<Problem> problems;
    for (const NamedObject& object : names.All()) {
        for (const auto& [key, value] : OwnProperties(object.reference)) {
            if (const auto fault = FaultInSetting(object.id, key, value))
                problems.push_back(
                    {Message("%1 has %2 %3, but %4.", Printable(object.path), key,
                             Printable(ValueToJson(key, value).dump()), *fault),
                     Message("Set both anew: %1", PlaceCommand(names.Word(object.id), "GROUP"))});
        }
    }
    return problems;
}

std::vector<Problem> FindUnplacedSurfaces(const Studio& studio, const ObjectNames& names) {
    std::vector<Problem> notes;
    for (const Device& device : studio.devices) {
        const auto position = StoredSettings(device.reference).position;
        if ((!position || position == device.id) && IsSurface(device))
            notes.push_back({Message("%1 has no position that was chosen.", Printable(device.name)),
                             Message("Choose one in Sorvex Mackie Setup, or by: %1",
                                     PlaceCommand(names.Word(device.id), "GROUP"))});
    }
    return notes;
}

std::vector<Problem> FindOddModels(const Studio& studio, const ObjectNames& names) {
    std::vector<Problem> notes;
    for (const Device& device : studio.devices) {
        if (auto hint = ModelHint(device, names.Word(device.id)))
            notes.push_back(
                {Message("The model of %1:", Printable(device.name)), *std::move(hint)});
    }
    return notes;
}

std::vector<Problem> FindUnitsWithoutSerial(const Studio& studio) {
    std::vector<const Device*> plugged;
    std::vector<const Device*> gone;
    std::string commands;
    for (const Device& device : studio.devices) {
        if (device.kind != DeviceKind::kCard || KestrinMIDIDeviceHasSerial(device.reference))
            continue;
        if (device.isOffline) {
            gone.push_back(&device);
            commands += "\n    midisetup remove " + std::to_string(device.id);
        } else if (MidiObject::String(device.reference, kKestrinMIDIPropertyUSBPath)) {
            plugged.push_back(&device);
        }
    }
    std::vector<Problem> notes;
    if (!plugged.empty())
        notes.push_back(
            {Message("Known by their USB port alone, since they have no serial number: %1.",
                     NamesOf(plugged)),
             Message("Leave each in its port, so that it keeps its settings.")});
    if (!gone.empty())
        notes.push_back(
            {Message("Unplugged, without a serial number: %1 (%2).", gone.size(), NamesOf(gone)),
             Message("What is only an old place of a unit that you still use can be forgotten:") +
                 commands});
    return notes;
}

} // namespace MidiSetup
