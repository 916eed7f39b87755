#include "tools/messages/Messages.h"
#include "tools/midisetup/Building.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"
#include "tools/midisetup/SurfaceHints.h"
#include "tools/midisetup/Usage.h"

#include <unordered_set>

namespace MidiSetup {

namespace {

constexpr int kMostPorts = 256;

struct AddOptions {
    DeviceKind kind = DeviceKind::kExternal;
    DeviceDescription description;
    int ports = 1;
    bool force = false;
};

struct RemoveOptions {
    std::string object;
};

void RefuseName(const AddOptions& options, const ObjectNames& names) {
    const std::string& name = options.description.name;
    RequireName(name);
    for (const NamedObject& object : names.All()) {
        const bool isSame = object.device != nullptr &&
                            object.reference == object.device->reference && object.path == name;
        if (isSame && !options.force)
            throw Failure(
                Message("there is a device \"%1\" already (%2, unique ID %3); --force adds "
                        "another one of that name",
                        Printable(name), Filled(object.kind.c_str()), object.id));
    }
}

std::string Add(const AddOptions& options) {
    RefuseName(options, ObjectNames(ReadStudio()));
    const MIDIUniqueID id =
        MidiObject::ID(BuildDeviceWithPorts(options.kind, options.description, options.ports));
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const Device& device = *names.Named(std::to_string(id)).device;
    const auto hint = ModelHint(device, names.Word(id));
    return Message("Added %1 with the unique ID %2.", Printable(device.name), id) + "\n" +
           (hint ? Message("Hint: %1", *hint) + "\n" : "");
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

void RemoveUnplugged(const NamedObject& object) {
    const bool isPort = object.entity != nullptr;
    const OSStatus status = isPort
                                ? MIDIDeviceRemoveEntity(object.device->reference, object.reference)
                                : RemoveDevice(object.device->kind, object.reference);
    const std::string name = Printable(object.path);
    if (status == kMIDINotPermitted)
        throw Failure(Message("cannot remove %1: it is plugged in; unplug it first", name));
    Check(status, Message("cannot remove %1", name));
}

std::string Remove(const RemoveOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const NamedObject& object = names.Named(options.object);
    const bool isDirection =
        object.entity != nullptr && object.reference != object.entity->reference;
    if (object.device == nullptr || isDirection)
        throw Failure(Message("only devices and ports can be removed, and %1 is a %2",
                              Printable(object.path), Filled(object.kind.c_str())));
    RemoveCablesTo(IDsWithin(object, names), names);
    RemoveUnplugged(object);
    return "";
}

void AddAddCommand(CLI::App* add, Action& chosen, DeviceKind kind, const std::string& help) {
    CLI::App* command = add->add_subcommand(KindName(kind), help);
    auto options = OptionsForChange(command, chosen, Add);
    options->kind = kind;
    DeviceDescription& description = options->description;
    command->add_option("NAME", description.name, Message("Its name"))->required();
    command->add_option("--manufacturer", description.manufacturer, Message("Its maker"));
    command->add_option("--model", description.model, Message("Its model"));
    CLI::Option* ports =
        command->add_option("--ports", options->ports, Message("How many ports, each in and out"));
    Restrict(ports->capture_default_str(), 0, kMostPorts);
    command->add_flag("--force", options->force,
                      Message("Also where a device bears that name already"));
}

} // namespace

void AddDeviceCommands(CLI::App& program, Action& chosen) {
    CLI::App* add = program.add_subcommand("add", Message("Add a device by hand"));
    add->require_subcommand(1);
    AddAddCommand(
        add, chosen, DeviceKind::kExternal,
        Message("A device that is cabled to a port of an interface, such as a control surface"));
    AddAddCommand(add, chosen, DeviceKind::kInterface, Message("An interface that has no driver"));

    CLI::App* remove = program.add_subcommand(
        "remove", Message("Forget a device or one of its ports, with all settings"));
    Explain(remove,
            Message("Cables to it are taken off. A device that is plugged in cannot be removed."));
    auto removeOptions = OptionsForChange(remove, chosen, Remove);
    remove->add_option("OBJECT", removeOptions->object, Message("A unique ID or a name"))
        ->required();
}

} // namespace MidiSetup
