#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"

#include <algorithm>
#include <iostream>

namespace MidiSetup {

namespace {

struct CableOptions {
    std::string port;
    std::string device;
};

const NamedObject& InterfacePort(const ObjectNames& names, const std::string& given) {
    const NamedObject& port = names.Named(given);
    if (port.device != nullptr && port.entity == nullptr)
        throw Failure("\"" + Printable(given) + "\" is a device; name one of its ports, as in \"" +
                      Printable(given) + ":Port 1\"");
    if (port.device != nullptr && port.device->kind == DeviceKind::kExternal)
        throw Failure("\"" + Printable(given) +
                      "\" belongs to an external device; the port of an interface comes first");
    return port;
}

const NamedObject& ExternalObject(const ObjectNames& names, const std::string& given) {
    const NamedObject& object = names.Named(given);
    if (object.device == nullptr || object.device->kind != DeviceKind::kExternal)
        throw Failure("\"" + Printable(given) +
                      "\" is not an external device; only those are cabled to a port");
    return object;
}

/// What a port's source or destination is connected to: the whole device where that was named, else
/// the same direction of the device's port.
MIDIUniqueID PeerOf(const Endpoint& endpoint, const NamedObject& external) {
    if (external.entity == nullptr)
        return external.id;
    const auto& peers =
        endpoint.isSource ? external.entity->sources : external.entity->destinations;
    return peers.empty() ? external.entity->id : peers.front().id;
}

bool IsPartOf(const NamedObject* object, const NamedObject& external) {
    if (object == nullptr || object->device != external.device)
        return false;
    return external.entity == nullptr || object->entity == external.entity;
}

bool ConnectEndpoint(const Endpoint& endpoint, MIDIUniqueID peer) {
    std::vector<MIDIUniqueID> connected = ConnectionsOf(endpoint.reference);
    if (std::find(connected.begin(), connected.end(), peer) != connected.end())
        return false;
    connected.push_back(peer);
    SetConnections(endpoint.reference, connected);
    return true;
}

bool DisconnectEndpoint(const Endpoint& endpoint, const NamedObject* external,
                        const ObjectNames& names) {
    std::vector<MIDIUniqueID> connected = ConnectionsOf(endpoint.reference);
    const auto goes = [&](MIDIUniqueID id) {
        return external == nullptr || IsPartOf(names.WithID(id), *external);
    };
    if (std::erase_if(connected, goes) == 0)
        return false;
    SetConnections(endpoint.reference, connected);
    return true;
}

int Connect(const CableOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const NamedObject& port = InterfacePort(names, options.port);
    const NamedObject& external = ExternalObject(names, options.device);
    bool changed = false;
    for (const Endpoint& endpoint : EndpointsOf(port))
        changed = ConnectEndpoint(endpoint, PeerOf(endpoint, external)) || changed;
    if (!changed)
        std::cout << "They are connected already.\n";
    return kExitDone;
}

int Disconnect(const CableOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const NamedObject& port = InterfacePort(names, options.port);
    const NamedObject* external =
        options.device.empty() ? nullptr : &ExternalObject(names, options.device);
    bool changed = false;
    for (const Endpoint& endpoint : EndpointsOf(port))
        changed = DisconnectEndpoint(endpoint, external, names) || changed;
    if (!changed)
        throw Failure("nothing is connected there");
    return kExitDone;
}

} // namespace

void AddConnectionCommands(CLI::App& program, Action& chosen) {
    CLI::App* connect = program.add_subcommand(
        "connect", "Tell that an external device is cabled to a port of an interface");
    Explain(connect,
            "Both directions of the port are connected. A port may have several devices, of "
            "which\nprograms that look for one surface take the first.");
    auto connectOptions = OptionsFor(connect, chosen, Connect);
    connect->add_option("PORT", connectOptions->port, "\"Interface:Port 1\" or a unique ID")
        ->required();
    connect
        ->add_option("DEVICE", connectOptions->device,
                     "The external device, or one port of it: \"Device:Port 2\"")
        ->required();

    CLI::App* disconnect =
        program.add_subcommand("disconnect", "Take a device, or everything, off a port");
    auto disconnectOptions = OptionsFor(disconnect, chosen, Disconnect);
    disconnect->add_option("PORT", disconnectOptions->port, "\"Interface:Port 1\" or a unique ID")
        ->required();
    disconnect->add_option("DEVICE", disconnectOptions->device,
                           "The external device; without it all are taken off");
}

} // namespace MidiSetup
