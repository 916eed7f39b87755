#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Json.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"
#include "tools/midisetup/Tree.h"

#include <iostream>

namespace MidiSetup {

namespace {

struct ListOptions {
    bool asJson = false;
};

struct ShowOptions {
    std::string object;
    bool asJson = false;
};

/// One surface as the program lists it.
struct ListedSurface {
    MidiDevice record;
    bool isNew = false; ///< it had no settings before the scan
    SInt32 shownPosition = 0;
};

struct ScannedSurfaces {
    std::vector<ListedSurface> list;
    OSStatus stored = noErr; ///< whether the defaults of the new ones are stored
};

std::string TypeName(SInt32 type) {
    switch (type) {
    case kSurfaceTypeMackieControl:
        return "Mackie Control";
    case kSurfaceTypeMackieControlExtender:
        return Message("Mackie Control extender");
    case kSurfaceTypeSAC2K:
        return "SAC-2K";
    default:
        return Message("other, as the HUI");
    }
}

bool HasSettings(const MidiDevice& record) {
    const auto object = MidiObject::WithID(record.uniqueID);
    const GroupSettings stored = StoredSettings(object ? object->reference : 0);
    return stored.group && stored.position;
}

ScannedSurfaces ScanSurfaces() {
    RequireDatabase();
    std::vector<MidiDevice> records;
    ReadAvailableDevices(records);
    ScannedSurfaces surfaces;
    for (const MidiDevice& record : records)
        surfaces.list.push_back({record, !HasSettings(record), 0});
    surfaces.stored = StoreGroupDefaults(records);

    std::vector<MidiDevice> shown = records;
    NormaliseGroupPositions(shown);
    for (std::size_t i = 0; i < records.size(); ++i) {
        surfaces.list[i].record = records[i];
        surfaces.list[i].shownPosition = shown[i].groupPosition;
    }
    return surfaces;
}

std::string SurfaceLines(const ListedSurface& surface, OSStatus stored) {
    const MidiDevice& record = surface.record;
    std::string lines =
        Strong(JoinedSurfaceName(record, Printable).value_or(Message("(no name)"))) + "\n  " +
        Message("%1 (type %2), group %3, position %4, unique ID %5", TypeName(record.surfaceType),
                record.surfaceType, record.groupID, surface.shownPosition, record.uniqueID) +
        "\n";
    std::string note;
    if (surface.isNew && stored == noErr)
        note = Message("new: this scan stored its default settings, group %1 and position %2",
                       record.groupID, record.groupPosition);
    else if (surface.isNew)
        note = Message("new: its default settings are group %1 and position %2", record.groupID,
                       record.groupPosition);
    else if (surface.shownPosition != record.groupPosition)
        note = Message("stored is position %1; the program would store the one above",
                       record.groupPosition);
    return note.empty() ? lines : lines + "  " + note + "\n";
}

std::string Unchanged(const std::string& name) {
    return name;
}

/// Where one direction of a surface is on this machine.
Json PlaceToJson(MIDIEndpointRef endpoint) {
    Json place = Json::object();
    for (const auto& [key, value] : LiveProperties(endpoint)) {
        if (const auto* number = std::get_if<SInt32>(&value))
            place[key] = *number;
        else if (const auto* text = std::get_if<std::string>(&value))
            place[key] = *text;
    }
    return place;
}

Json SurfaceToJson(const ListedSurface& surface) {
    return {{"name", JoinedSurfaceName(surface.record, Unchanged).value_or("")},
            {"uniqueID", surface.record.uniqueID},
            {"type", surface.record.surfaceType},
            {"group", surface.record.groupID},
            {"position", surface.shownPosition},
            {"storedPosition", surface.record.groupPosition},
            {"new", surface.isNew},
            {"source", PlaceToJson(surface.record.sourceEndpoint)},
            {"destination", PlaceToJson(surface.record.destinationEndpoint)}};
}

int List(const ListOptions& options) {
    const Studio studio = ReadStudio();
    if (options.asJson)
        std::cout << DocumentText(StudioToJson(studio));
    else
        std::cout << TreeOf(studio, ObjectNames(studio));
    return kExitDone;
}

int Show(const ShowOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const NamedObject& object = names.Named(options.object);
    std::cout << (options.asJson ? DocumentText(DetailsToJson(object)) : DetailsOf(object, names));
    return kExitDone;
}

int Surfaces(const ListOptions& options) {
    const ScannedSurfaces surfaces = ScanSurfaces();
    Json json = Json::array();
    std::string lines;
    for (const ListedSurface& surface : surfaces.list) {
        json.push_back(SurfaceToJson(surface));
        lines += SurfaceLines(surface, surfaces.stored);
    }
    if (lines.empty())
        lines = Message("There are no compatible surfaces.") + "\n";
    std::cout << (options.asJson ? DocumentText(json) : lines);
    Check(surfaces.stored, Message("cannot store the default settings of the new surfaces"));
    return kExitDone;
}

} // namespace

void AddListCommands(CLI::App& program, Action& chosen) {
    CLI::App* list =
        program.add_subcommand("list", Message("Show all devices, ports and cables as a tree"));
    auto listOptions = OptionsForReading(list, chosen, List);
    list->add_flag("--json", listOptions->asJson, Message("Print the document that export writes"));

    CLI::App* show =
        program.add_subcommand("show", Message("Show one object with all its properties"));
    auto showOptions = OptionsForReading(show, chosen, Show);
    show->add_option("OBJECT", showOptions->object, Message("A unique ID or a name"))->required();
    show->add_flag("--json", showOptions->asJson, Message("Print JSON"));

    CLI::App* surfaces = program.add_subcommand(
        "surfaces",
        Message("Show the control surfaces that Sorvex Mackie Setup would find, in its order"));
    Explain(
        surfaces,
        Message("Like the program itself, this stores the default settings (group 0, its unique ID "
                "as\nposition) for every surface that has none yet; \"list\" stores nothing."));
    auto surfacesOptions = OptionsForReading(surfaces, chosen, Surfaces);
    surfaces->add_flag("--json", surfacesOptions->asJson, Message("Print JSON"));
}

} // namespace MidiSetup
