#include "tools/midisetup/Studio.h"

#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"

#include "tools/messages/Messages.h"
#include "tools/messages/ServiceMessages.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Properties.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <algorithm>

namespace MidiSetup {

namespace {

std::string NameOf(MIDIObjectRef object) {
    return MidiObject::String(object, kMIDIPropertyName).value_or("");
}

bool IsOffline(MIDIObjectRef object) {
    return MidiObject::Integer(object, kMIDIPropertyOffline).value_or(0) != 0;
}

Endpoint ReadEndpoint(MIDIEndpointRef reference, bool isSource) {
    return {reference, MidiObject::ID(reference), NameOf(reference), isSource,
            IsOffline(reference)};
}

Entity ReadEntity(MIDIEntityRef reference) {
    Entity entity{reference, MidiObject::ID(reference), NameOf(reference), {}, {}};
    const ItemCount sources = MIDIEntityGetNumberOfSources(reference);
    for (ItemCount i = 0; i < sources; ++i)
        entity.sources.push_back(ReadEndpoint(MIDIEntityGetSource(reference, i), true));
    const ItemCount destinations = MIDIEntityGetNumberOfDestinations(reference);
    for (ItemCount i = 0; i < destinations; ++i)
        entity.destinations.push_back(ReadEndpoint(MIDIEntityGetDestination(reference, i), false));
    return entity;
}

Device ReadDevice(MIDIDeviceRef reference, DeviceKind kind) {
    Device device{reference,         MidiObject::ID(reference), kind,
                  NameOf(reference), IsOffline(reference),      {}};
    const ItemCount entities = MIDIDeviceGetNumberOfEntities(reference);
    for (ItemCount i = 0; i < entities; ++i)
        device.entities.push_back(ReadEntity(MIDIDeviceGetEntity(reference, i)));
    return device;
}

DeviceKind KindOf(MIDIDeviceRef reference) {
    return MidiObject::String(reference, kMIDIPropertyDriverOwner) ? DeviceKind::kCard
                                                                   : DeviceKind::kInterface;
}

Endpoint ReadProgramEndpoint(MIDIEndpointRef reference) {
    MIDIObjectType type = kMIDIObjectType_Other;
    MIDIObjectFindByUniqueID(MidiObject::ID(reference), nullptr, &type);
    return ReadEndpoint(reference, type == kMIDIObjectType_Source);
}

bool IsSurfacePort(const Endpoint& endpoint) {
    return IsEndpointAVirtualMIDIPort(endpoint.reference) != 0;
}

} // namespace

Studio ReadStudio() {
    RequireDatabase();
    Studio studio;
    const ItemCount devices = MIDIGetNumberOfDevices();
    for (ItemCount i = 0; i < devices; ++i) {
        const MIDIDeviceRef reference = MIDIGetDevice(i);
        studio.devices.push_back(ReadDevice(reference, KindOf(reference)));
    }
    const ItemCount externals = MIDIGetNumberOfExternalDevices();
    for (ItemCount i = 0; i < externals; ++i)
        studio.devices.push_back(ReadDevice(MIDIGetExternalDevice(i), DeviceKind::kExternal));
    const ItemCount endpoints = KestrinMIDIGetNumberOfVirtualEndpoints();
    for (ItemCount i = 0; i < endpoints; ++i)
        studio.programEndpoints.push_back(ReadProgramEndpoint(KestrinMIDIGetVirtualEndpoint(i)));
    return studio;
}

void RequireDatabase() {
    if (KestrinMIDIGetDatabaseState() == kKestrinMIDIDatabaseReady)
        return;
    const std::string problem = ServiceMessage(KestrinMIDICopyDatabaseProblem());
    throw Failure((problem.empty() ? Message("The MIDI database can't be used.") : problem) + "\n" +
                  Message("\"midisetup doctor\" tells what to do."));
}

const char* KindName(DeviceKind kind) {
    switch (kind) {
    case DeviceKind::kCard:
        return Marked("card");
    case DeviceKind::kInterface:
        return Marked("interface");
    case DeviceKind::kExternal:
        return Marked("external");
    }
    return "";
}

GroupSettings StoredSettings(MIDIObjectRef object) {
    return {MidiObject::Integer(object, RequireText(kGroupIDKey).Get()),
            MidiObject::Integer(object, RequireText(kGroupPositionKey).Get())};
}

bool IsSurface(const Device& device) {
    if (device.kind == DeviceKind::kExternal)
        return IsUniqueIDOurDevice(device.id);
    return std::any_of(device.entities.begin(), device.entities.end(), [](const Entity& entity) {
        return std::any_of(entity.sources.begin(), entity.sources.end(), IsSurfacePort) &&
               std::any_of(entity.destinations.begin(), entity.destinations.end(), IsSurfacePort);
    });
}

} // namespace MidiSetup
