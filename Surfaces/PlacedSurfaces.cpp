#include "Surfaces/PlacedSurfaces.h"

#include "Surfaces/IsolatedText.h"
#include "Surfaces/MidiObject.h"
#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include <CoreMIDI/MIDIReading.h>

#include <algorithm>
#include <optional>
#include <tuple>
#include <unordered_map>

namespace {

constexpr std::size_t kLongestPortName =
    63; // SNDRV_SEQ port names have 64 bytes, the last one zero

/// A setting as a user chose it; nothing where it is missing or as a scan left it.
std::optional<SInt32> Chosen(MIDIObjectRef object, const char* key) {
    const auto value = MidiObject::Integer(object, MidiObject::ToText(key).Get());
    const bool isInRange = value && *value >= kFirstGroupSetting && *value <= kLastGroupSetting;
    return isInRange ? value : std::nullopt;
}

/// Adds the device where it is a surface with a place.
void AddIfPlaced(MIDIDeviceRef device, std::vector<PlacedSurface>& surfaces) {
    const auto manufacturer = MidiObject::String(device, kMIDIPropertyManufacturer);
    const auto model = MidiObject::String(device, kMIDIPropertyModel);
    if (!manufacturer || !model || !FindSurfaceModel(*manufacturer, *model))
        return;
    const auto group = Chosen(device, kGroupIDKey);
    const auto position = Chosen(device, kGroupPositionKey);
    if (!group || !position)
        return;
    surfaces.push_back({MidiObject::ID(device), *group, *position, SurfaceTypeOf(*model),
                        MidiObject::String(device, kMIDIPropertyName).value_or(*model)});
}

/// For each surface the endpoint that leads to it; of several, the last one met, as in a scan.
std::unordered_map<MIDIUniqueID, MIDIEndpointRef>
EndpointsOfSurfaces(ItemCount count, MIDIEndpointRef (*endpointAt)(ItemCount)) {
    std::unordered_map<MIDIUniqueID, MIDIEndpointRef> endpoints;
    for (ItemCount i = 0; i < count; ++i) {
        const MIDIEndpointRef endpoint = endpointAt(i);
        if (const MIDIUniqueID surface = SurfaceBehind(endpoint))
            endpoints[surface] = endpoint;
    }
    return endpoints;
}

void AddEndpoints(std::vector<PlacedSurface>& surfaces) {
    const auto sources = EndpointsOfSurfaces(MIDIGetNumberOfSources(), MIDIGetSource);
    const auto destinations =
        EndpointsOfSurfaces(MIDIGetNumberOfDestinations(), MIDIGetDestination);
    for (PlacedSurface& surface : surfaces) {
        if (const auto found = sources.find(surface.uniqueID); found != sources.end())
            surface.source = found->second;
        if (const auto found = destinations.find(surface.uniqueID); found != destinations.end())
            surface.destination = found->second;
    }
}

} // namespace

std::vector<PlacedSurface> PlacedSurfaces() {
    const MIDIReading reading;
    std::vector<PlacedSurface> surfaces;
    const ItemCount devices = MIDIGetNumberOfDevices();
    for (ItemCount i = 0; i < devices; ++i)
        AddIfPlaced(MIDIGetDevice(i), surfaces);
    const ItemCount externals = MIDIGetNumberOfExternalDevices();
    for (ItemCount i = 0; i < externals; ++i)
        AddIfPlaced(MIDIGetExternalDevice(i), surfaces);
    AddEndpoints(surfaces);
    std::ranges::stable_sort(surfaces, {}, [](const PlacedSurface& surface) {
        return std::tuple(surface.group, surface.position);
    });
    return surfaces;
}

std::string SurfaceClientName(SInt32 group) {
    return "Surfaces " + std::to_string(group);
}

std::string SurfacePortName(int place, const std::string& unitName) {
    return CutToBytes(std::to_string(place) + " " + unitName, kLongestPortName);
}
