#include "tools/surface-ports/SurfacePlan.h"

#include "Surfaces/MidiObject.h"
#include "Surfaces/PlacedSurfaces.h"

#include <CoreMIDI/MIDIDatabase.h>

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
    Plan plan;
    for (const PlacedSurface& surface : PlacedSurfaces()) {
        if (plan.empty() || plan.back().number != surface.group)
            plan.push_back({surface.group, {}});
        plan.back().units.push_back({surface.uniqueID, surface.name, AddressOf(surface.source),
                                     AddressOf(surface.destination)});
    }
    // Asked last: where it went while it was read, all seemed to be gone.
    return IsDatabaseReady() ? std::optional(std::move(plan)) : std::nullopt;
}

} // namespace SurfacePorts
