#include "tools/messages/Messages.h"
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

bool IsExternal(const NamedObject& object) {
    return object.device != nullptr && object.device->kind == DeviceKind::kExternal;
}

/// How a command line names the object, or a port of it where it is a device.
std::string PortWord(const NamedObject& object, const ObjectNames& names) {
    const bool hasPort =
        object.entity == nullptr && object.device != nullptr && !object.device->entities.empty();
    return names.Word(hasPort ? object.device->entities.front().id : object.id);
}

struct Cable {
    const NamedObject& port;
    const NamedObject* external; ///< null for all that is connected to the port
};

/// Throws Failure, with advice, where `command` cannot connect what was named.
void Check(const Cable& cable, const ObjectNames& names, const std::string& command) {
    const NamedObject& port = cable.port;
    const std::string portName = Printable(port.path);
    if (cable.external != nullptr && IsExternal(port) && !IsExternal(*cable.external))
        throw Failure(Message("the port stands first: %1", "midisetup " + command + " " +
                                                               PortWord(*cable.external, names) +
                                                               " " + names.Word(port.id)));
    if (cable.external != nullptr && !IsExternal(*cable.external))
        throw Failure(
            Message("\"%1\" is not an external device; only those are cabled to a port, and "
                    "\"midisetup add external\" adds one",
                    Printable(cable.external->path)));
    if (IsExternal(port))
        throw Failure(
            Message("\"%1\" belongs to an external device; the port of an interface, or of "
                    "a program, stands first; \"midisetup list\" shows them",
                    portName));
    if (port.device != nullptr && port.entity == nullptr)
        throw Failure(Message("\"%1\" is a device; name one of its ports, as in %2", portName,
                              PortWord(port, names)));
}

Cable NamedCable(const CableOptions& options, const ObjectNames& names,
                 const std::string& command) {
    const bool isAll = options.device.empty();
    const Cable cable{names.NamedPort(options.port),
                      isAll ? nullptr : &names.NamedPort(options.device)};
    Check(cable, names, command);
    return cable;
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

std::string Connect(const CableOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    if (options.device.empty())
        throw Failure(
            Message("the device's name is empty; \"midisetup list\" shows what there is"));
    const Cable cable = NamedCable(options, names, "connect");
    bool changed = false;
    for (const Endpoint& endpoint : EndpointsOf(cable.port, studio))
        changed = ConnectEndpoint(endpoint, PeerOf(endpoint, *cable.external)) || changed;
    return changed ? "" : Message("They are connected already.") + "\n";
}

std::string Disconnect(const CableOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const Cable cable = NamedCable(options, names, "disconnect");
    bool changed = false;
    for (const Endpoint& endpoint : EndpointsOf(cable.port, studio))
        changed = DisconnectEndpoint(endpoint, cable.external, names) || changed;
    const std::string port = Printable(cable.port.path);
    if (!changed && cable.external != nullptr)
        throw Failure(Message("%1 is not connected to %2", Printable(cable.external->path), port));
    if (!changed)
        throw Failure(Message("nothing is connected to %1", port));
    return "";
}

} // namespace

void AddConnectionCommands(CLI::App& program, Action& chosen) {
    CLI::App* connect = program.add_subcommand(
        "connect", Message("Tell that an external device is cabled to a port"));
    Explain(
        connect,
        Message("PORT is that of an interface, or one that a program offers, as network MIDI does. "
                "Both\ndirections of it are connected. A port may have several devices, of which "
                "programs that\nlook for one surface take the first."));
    auto connectOptions = OptionsForChange(connect, chosen, Connect);
    connect
        ->add_option("PORT", connectOptions->port, Message("\"Interface:Port 1\" or a unique ID"))
        ->required();
    connect
        ->add_option("DEVICE", connectOptions->device,
                     Message("The external device, or one port of it: \"Device:Port 2\""))
        ->required();

    CLI::App* disconnect =
        program.add_subcommand("disconnect", Message("Take a device, or everything, off a port"));
    auto disconnectOptions = OptionsForChange(disconnect, chosen, Disconnect);
    disconnect
        ->add_option("PORT", disconnectOptions->port,
                     Message("\"Interface:Port 1\" or a unique ID"))
        ->required();
    disconnect->add_option("DEVICE", disconnectOptions->device,
                           Message("The external device; without it all are taken off"));
}

} // namespace MidiSetup
