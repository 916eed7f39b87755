#include "tools/midisetup/Building.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"

#include <iostream>
#include <unordered_set>

namespace MidiSetup {

namespace {

constexpr int kMostPorts = 256;

struct AddOptions {
    DeviceKind kind = DeviceKind::kExternal;
    DeviceDescription description;
    int ports = 1;
};

struct RemoveOptions {
    std::string object;
};

int Add(const AddOptions& options) {
    RequireDatabase();
    const MIDIDeviceRef device =
        BuildDeviceWithPorts(options.kind, options.description, options.ports);
    std::cout << "Added " << Printable(MidiObject::String(device, kMIDIPropertyName).value_or(""))
              << " with the unique ID " << MidiObject::ID(device) << ".\n";
    return kExitDone;
}

/// The unique IDs that go when `object` is removed.
std::unordered_set<MIDIUniqueID> IDsWithin(const NamedObject& object, const ObjectNames& names) {
    std::unordered_set<MIDIUniqueID> ids;
    for (const NamedObject& other : names.All()) {
        const bool isWithin = object.entity == nullptr ? other.device == object.device
                                                       : other.entity == object.entity;
        if (isWithin)
            ids.insert(other.id);
    }
    return ids;
}

/// Takes what is about to go off all ports, so that no cable is left that leads nowhere.
void RemoveCablesTo(const std::unordered_set<MIDIUniqueID>& gone, const ObjectNames& names) {
    for (const NamedObject& object : names.All()) {
        std::vector<MIDIUniqueID> connected = ConnectionsOf(object.reference);
        const bool isDirection = object.kind == "source" || object.kind == "destination";
        const bool isConcerned =
            isDirection && gone.count(object.id) == 0 &&
            std::erase_if(connected, [&](MIDIUniqueID id) { return gone.count(id) != 0; }) != 0;
        if (isConcerned)
            SetConnections(object.reference, connected);
    }
}

void RemoveUnplugged(const Device& device) {
    const OSStatus status = RemoveDevice(device.kind, device.reference);
    if (status == kMIDINotPermitted)
        throw Failure("cannot remove the device: it is plugged in");
    Check(status, "remove the device");
}

int Remove(const RemoveOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const NamedObject& object = names.Named(options.object);
    const bool isDirection =
        object.entity != nullptr && object.reference != object.entity->reference;
    if (object.device == nullptr || isDirection)
        throw Failure("only devices and ports can be removed");

    if (object.entity != nullptr)
        Check(MIDIDeviceRemoveEntity(object.device->reference, object.reference),
              "remove the port");
    else
        RemoveUnplugged(*object.device);
    RemoveCablesTo(IDsWithin(object, names), names);
    return kExitDone;
}

void AddAddCommand(CLI::App* add, Action& chosen, DeviceKind kind, const char* help) {
    CLI::App* command = add->add_subcommand(KindName(kind), help);
    auto options = OptionsFor(command, chosen, Add);
    options->kind = kind;
    DeviceDescription& description = options->description;
    command->add_option("NAME", description.name, "Its name")->required();
    command->add_option("--manufacturer", description.manufacturer, "Its maker");
    command->add_option("--model", description.model, "Its model");
    command->add_option("--ports", options->ports, "How many ports, each in and out")
        ->check(CLI::Range(0, kMostPorts))
        ->capture_default_str();
}

} // namespace

void AddDeviceCommands(CLI::App& program, Action& chosen) {
    CLI::App* add = program.add_subcommand("add", "Add a device by hand");
    add->require_subcommand(1);
    AddAddCommand(add, chosen, DeviceKind::kExternal,
                  "A device that is cabled to a port of an interface, such as a control surface");
    AddAddCommand(add, chosen, DeviceKind::kInterface, "An interface that has no driver");

    CLI::App* remove =
        program.add_subcommand("remove", "Forget a device or one of its ports, with all settings");
    Explain(remove, "Cables to it are taken off. A device that is plugged in cannot be removed.");
    auto removeOptions = OptionsFor(remove, chosen, Remove);
    remove->add_option("OBJECT", removeOptions->object, "A unique ID or a name")->required();
}

} // namespace MidiSetup
