#include "tools/midisetup/Connections.h"

#include "tools/midisetup/Failure.h"

#include <cstring>

namespace MidiSetup {

namespace {

std::string ConnectionKey() {
    return MidiObject::FromText(kMIDIPropertyConnectionUniqueID);
}

Bytes Pack(const std::vector<MIDIUniqueID>& ids) {
    Bytes bytes(ids.size() * sizeof(MIDIUniqueID));
    std::memcpy(bytes.data(), ids.data(), bytes.size());
    return bytes;
}

} // namespace

std::vector<MIDIUniqueID> ConnectionsOf(MIDIObjectRef port) {
    const auto value = GetProperty(port, ConnectionKey());
    return value ? ConnectionsIn(*value) : std::vector<MIDIUniqueID>();
}

std::vector<MIDIUniqueID> ConnectionsIn(const PropertyValue& value) {
    if (const auto* bytes = std::get_if<Bytes>(&value))
        return MidiObject::IDsIn(*bytes);
    const auto* id = std::get_if<SInt32>(&value);
    return id != nullptr && *id != 0 ? std::vector<MIDIUniqueID>{*id} : std::vector<MIDIUniqueID>();
}

PropertyValue ConnectionValue(const std::vector<MIDIUniqueID>& ids) {
    if (ids.size() == 1)
        return ids.front();
    return Pack(ids);
}

void SetConnections(MIDIObjectRef port, const std::vector<MIDIUniqueID>& ids) {
    if (ids == ConnectionsOf(port))
        return;
    if (ids.empty())
        RemoveProperty(port, ConnectionKey());
    else
        SetProperty(port, ConnectionKey(), ConnectionValue(ids));
}

std::vector<Endpoint> EndpointsOf(const NamedObject& port, const Studio& studio) {
    if (port.entity == nullptr) {
        std::vector<Endpoint> same;
        std::vector<Endpoint> named;
        for (const Endpoint& endpoint : studio.programEndpoints) {
            if (port.otherNames.front() == endpoint.name)
                same.push_back(endpoint);
            if (port.reference == endpoint.reference)
                named.push_back(endpoint);
        }
        const bool isOnePort = same.size() == 2 && same[0].isSource != same[1].isSource;
        return isOnePort ? same : named;
    }
    std::vector<Endpoint> endpoints = port.entity->sources;
    endpoints.insert(endpoints.end(), port.entity->destinations.begin(),
                     port.entity->destinations.end());
    return endpoints;
}

} // namespace MidiSetup
