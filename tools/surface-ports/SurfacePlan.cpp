#include "tools/surface-ports/SurfacePlan.h"

#include "Surfaces/MidiObject.h"
#include "Surfaces/PlacedSurfaces.h"

#include <CoreMIDI/MIDIReading.h>

namespace SurfacePorts {

namespace {

std::optional<Address> AddressOf(MIDIEndpointRef endpoint) {
    const auto client = MidiObject::Integer(endpoint, kKestrinMIDIPropertySequencerClient);
    const auto port = MidiObject::Integer(endpoint, kKestrinMIDIPropertySequencerPort);
    return client && port ? std::optional(Address{*client, *port}) : std::nullopt;
}

bool IsDatabaseReady() {
    return KestrinMIDIGetDatabaseState() == kKestrinMIDIDatabaseReady;
}

} // namespace

std::optional<Plan> ReadPlan() {
    // A unit that is not met for a moment would lose its port, and with it its mixer.
    const MIDIReading reading;
    Plan plan;
    for (const PlacedSurface& surface : PlacedSurfaces()) {
        if (plan.empty() || plan.back().number != surface.group)
            plan.push_back({surface.group, {}});
        plan.back().units.push_back({surface.uniqueID, surface.name, AddressOf(surface.source),
                                     AddressOf(surface.destination)});
    }
    return IsDatabaseReady() ? std::optional(std::move(plan)) : std::nullopt;
}

} // namespace SurfacePorts
