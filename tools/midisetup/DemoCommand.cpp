#include "Surfaces/SurfaceGroups.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Building.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Failure.h"

#include <algorithm>

namespace MidiSetup {

namespace {

struct DemoOptions {};

void RequireEmptyStudio(const Studio& studio) {
    for (const Device& device : studio.devices) {
        const GroupSettings settings = StoredSettings(device.reference);
        if (device.kind != DeviceKind::kCard || settings.group || settings.position)
            throw Failure(
                Message("the demonstration studio is put only into a database without added "
                        "devices and group settings.\nName another file for it, as in: %1",
                        "KESTRIN_MIDI_DATABASE=demo.sqlite3 midisetup demo"));
    }
}

/// Cables a device to the port of an interface, in both directions.
void Cable(MIDIDeviceRef interface, ItemCount port, MIDIDeviceRef device) {
    const MIDIEntityRef entity = MIDIDeviceGetEntity(interface, port);
    const std::vector<MIDIUniqueID> connected{MidiObject::ID(device)};
    SetConnections(MIDIEntityGetSource(entity, 0), connected);
    SetConnections(MIDIEntityGetDestination(entity, 0), connected);
}

void Place(MIDIDeviceRef surface, SInt32 group, SInt32 position) {
    SetProperty(surface, kGroupPositionKey, position);
    SetProperty(surface, kGroupIDKey, group);
}

MIDIDeviceRef BuildSurface(const DeviceDescription& description) {
    return BuildDeviceWithPorts(DeviceKind::kExternal, description, 1);
}

/// A main unit between its two extenders, set up as one group.
void BuildDesk() {
    const MIDIDeviceRef interface = BuildDeviceWithPorts(
        DeviceKind::kInterface, {"Desk Interface", "Velt", "Four-Port Interface"}, 4);
    const MIDIDeviceRef left = BuildSurface({"Left Extender", "Mackie", "Mackie Control Exp"});
    const MIDIDeviceRef control = BuildSurface({"Mackie Control", "Mackie", "Mackie Control"});
    const MIDIDeviceRef right = BuildSurface({"Right Extender", "Mackie", "Mackie Control Exp"});
    Cable(interface, 0, control);
    Cable(interface, 1, left);
    Cable(interface, 2, right);
    Place(left, 1, 0);
    Place(control, 1, 1);
    Place(right, 1, 2);
}

/// A unit that is its own interface, never set up.
void BuildUSBUnit() {
    BuildDeviceWithPorts(DeviceKind::kInterface,
                         {"MCU Pro USB", "LOUD Technologies, Inc.", "MCU Pro USB"}, 4);
}

/// Two older units, of which one is set up.
void BuildRack() {
    const MIDIDeviceRef interface = BuildDeviceWithPorts(
        DeviceKind::kInterface, {"Rack Interface", "Velt", "Two-Port Interface"}, 2);
    const MIDIDeviceRef hui = BuildSurface({"HUI", "Mackie", "HUI"});
    const MIDIDeviceRef sac = BuildSurface({"SAC-2K", "Radikal Technologies", "SAC-2K"});
    Cable(interface, 0, hui);
    Cable(interface, 1, sac);
    Place(hui, 2, 0);
}

std::string Demo(const DemoOptions&) {
    RequireEmptyStudio(ReadStudio());
    BuildDesk();
    BuildUSBUnit();
    BuildRack();
    return Message("The demonstration studio is set up: \"midisetup list\" shows it, \"midisetup "
                   "surfaces\" what Sorvex Mackie Setup finds in it.") +
           "\n";
}

} // namespace

void AddDemoCommand(CLI::App& program, Action& chosen) {
    CLI::App* demo = program.add_subcommand(
        "demo", Message("Fill a new database with a studio to try things with"));
    Explain(
        demo,
        Message(
            "A main unit with two extenders, a USB unit, a HUI and a SAC-2K, some grouped, some "
            "new.\nRefuses where devices were added or surfaces set up already."));
    OptionsForChange(demo, chosen, Demo);
}

} // namespace MidiSetup
