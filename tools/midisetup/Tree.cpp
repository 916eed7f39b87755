#include "tools/midisetup/Tree.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Connections.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>

namespace MidiSetup {

namespace {

/// A name that a person can see, even where there is none.
std::string ShownName(const std::string& name) {
    return name.empty() ? Message("(no name)") : Printable(name);
}

std::string SettingText(std::optional<SInt32> value) {
    return value ? std::to_string(*value) : Message("not set");
}

std::string SettingsText(const Device& device) {
    const GroupSettings settings = StoredSettings(device.reference);
    const std::string group = SettingText(settings.group);
    if (!settings.group && !settings.position)
        return IsSurface(device) ? Message("surface: new, no group yet") : "";
    if (settings.position == device.id)
        return Message("surface: group %1, no position chosen", group);
    return Message("surface: group %1, position %2", group, SettingText(settings.position));
}

std::string DirectionsOf(const Entity& entity) {
    if (entity.destinations.empty())
        return entity.sources.empty() ? Message("no direction") : Message("in");
    return entity.sources.empty() ? Message("out") : Message("in, out");
}

std::set<MIDIUniqueID> ConnectedTo(const std::vector<Endpoint>& endpoints) {
    std::set<MIDIUniqueID> ids;
    for (const Endpoint& endpoint : endpoints) {
        for (const MIDIUniqueID id : ConnectionsOf(endpoint.reference))
            ids.insert(id);
    }
    return ids;
}

/// "  at 20:0", the sequencer port of what is plugged in.
std::string PlaceText(MIDIObjectRef object) {
    const auto client = MidiObject::Integer(object, kKestrinMIDIPropertySequencerClient);
    const auto port = MidiObject::Integer(object, kKestrinMIDIPropertySequencerPort);
    if (!client || !port)
        return "";
    return Faint("  " + Message("at %1:%2", *client, *port));
}

/// The cables of a port, one line each; a cable in one direction only is drawn as an arrow.
std::string CableLines(const Entity& entity, const ObjectNames& names) {
    const std::set<MIDIUniqueID> in = ConnectedTo(entity.sources);
    const std::set<MIDIUniqueID> out = ConnectedTo(entity.destinations);
    std::set<MIDIUniqueID> all = in;
    all.insert(out.begin(), out.end());

    std::string lines;
    for (const MIDIUniqueID id : all) {
        const bool both = in.count(id) != 0 && out.count(id) != 0;
        const char* cable = both ? "<->" : in.count(id) != 0 ? "<--" : "-->";
        lines += std::string("      ") + cable + " " + names.Describe(id) + "\n";
    }
    return lines;
}

std::string OfflineText() {
    return Faint(" (" + Message("offline") + ")");
}

std::string DeviceLines(const Device& device, const ObjectNames& names) {
    std::string head = "  " + Strong(ShownName(device.name));
    if (device.kind == DeviceKind::kInterface)
        head += " (" + Message("added") + ")";
    if (device.isOffline)
        head += OfflineText();
    if (const std::string settings = SettingsText(device); !settings.empty())
        head = Listed(head, settings);
    head += Faint("  #" + std::to_string(device.id)) + "\n";
    for (const Entity& entity : device.entities) {
        head += "    " + ShownName(entity.name) + " (" + DirectionsOf(entity) + ")" +
                PlaceText(entity.reference) + "\n";
        if (device.kind != DeviceKind::kExternal)
            head += CableLines(entity, names);
    }
    return head;
}

std::string DevicesSection(const std::string& title, const Studio& studio, const ObjectNames& names,
                           bool external) {
    std::string lines;
    for (const Device& device : studio.devices) {
        if ((device.kind == DeviceKind::kExternal) == external)
            lines += DeviceLines(device, names);
    }
    return lines.empty() ? "" : title + "\n" + lines;
}

std::string ProgramsSection(const Studio& studio) {
    std::string lines;
    for (const Endpoint& endpoint : studio.programEndpoints) {
        lines += "  " + ShownName(endpoint.name) + " (" +
                 (endpoint.isSource ? Message("in") : Message("out")) + ")" +
                 (endpoint.isOffline ? OfflineText() : "") + PlaceText(endpoint.reference) +
                 Faint("  #" + std::to_string(endpoint.id)) + "\n";
    }
    return lines.empty() ? "" : Message("Ports of programs") + "\n" + lines;
}

/// "0a73:0006", as other tools show it.
std::string VendorAndProduct(SInt32 both) {
    std::array<char, sizeof "0000:0000"> text{};
    const auto bits = static_cast<UInt32>(both);
    std::snprintf(text.data(), text.size(), "%04x:%04x", bits >> 16, bits & 0xFFFF);
    return text.data();
}

std::string ValueText(const std::string& key, const PropertyValue& value,
                      const ObjectNames& names) {
    if (key == MidiObject::FromText(kMIDIPropertyConnectionUniqueID)) {
        std::string connected;
        for (const MIDIUniqueID id : ConnectionsIn(value))
            connected = Listed(connected, names.Describe(id));
        return connected;
    }
    if (const auto* number = std::get_if<SInt32>(&value))
        return key == MidiObject::FromText(kKestrinMIDIPropertyUSBVendorProduct)
                   ? VendorAndProduct(*number)
                   : std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value))
        return "\"" + Printable(*text) + "\"";
    return Message("data %1", ToHex(std::get<Bytes>(value)));
}

class PropertyLister {
public:
    explicit PropertyLister(const ObjectNames& names)
        : fNames(names) {}

    /// The object's own properties, less those that an object listed before hides.
    std::string Lines(MIDIObjectRef object, const std::string& from) {
        std::string lines;
        for (const auto& [key, value] : OwnProperties(object)) {
            if (fListed.insert(key).second)
                lines += "  " + Printable(key) + ": " + ValueText(key, value, fNames) +
                         Faint(from) + "\n";
        }
        return lines;
    }

private:
    const ObjectNames& fNames;
    std::set<std::string> fListed;
};

} // namespace

std::string TreeOf(const Studio& studio, const ObjectNames& names) {
    std::string tree = DevicesSection(Message("Interfaces"), studio, names, false) +
                       DevicesSection(Message("External devices"), studio, names, true) +
                       ProgramsSection(studio);
    return tree.empty() ? Message("There are no MIDI devices. \"midisetup add\" adds one by hand, "
                                  "\"midisetup demo\" a demonstration studio.") +
                              "\n"
                        : tree;
}

std::string DetailsOf(const NamedObject& object, const ObjectNames& names) {
    std::string lines = Strong(ShownName(object.path)) + "\n  " +
                        Message("kind: %1", Filled(object.kind.c_str())) + "\n  " +
                        Message("unique ID: %1", object.id) + "\n";
    PropertyLister lister(names);
    lines += lister.Lines(object.reference, "");
    if (object.entity != nullptr && object.entity->reference != object.reference)
        lines += lister.Lines(object.entity->reference, "  " + Message("(from its port)"));
    if (object.device != nullptr && object.device->reference != object.reference)
        lines += lister.Lines(object.device->reference, "  " + Message("(from its device)"));
    for (const auto& [key, value] : LiveProperties(object.reference))
        lines += "  " + key + ": " + ValueText(key, value, names) + Faint("  " + Message("(now)")) +
                 "\n";
    return lines;
}

} // namespace MidiSetup
