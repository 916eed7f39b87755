#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Json.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Tree.h"

#include <algorithm>
#include <iostream>

namespace MidiSetup {

namespace {

struct ListOptions {
    bool asJson = false;
};

struct ShowOptions {
    std::string object;
};

/// One surface as the program lists it.
struct ListedSurface {
    std::string name;
    MidiDevice record;
    GroupSettings stored; ///< before the scan
    SInt32 shownPosition = 0;

    bool IsNew() const { return !stored.group || !stored.position; }
};

const char* TypeName(SInt32 type) {
    switch (type) {
    case kSurfaceTypeMackieControl:
        return "Mackie Control";
    case kSurfaceTypeMackieControlExtender:
        return "Mackie Control extender";
    case kSurfaceTypeSAC2K:
        return "SAC-2K";
    default:
        return "other, as the HUI";
    }
}

/// What is stored before a scan, by unique ID: a scan gives its defaults to what has none.
std::unordered_map<MIDIUniqueID, GroupSettings> SettingsBeforeScan(const ObjectNames& names) {
    std::unordered_map<MIDIUniqueID, GroupSettings> settings;
    for (const NamedObject& object : names.All())
        settings.emplace(object.id, StoredSettings(object.reference));
    return settings;
}

std::vector<ListedSurface> ScanSurfaces() {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    auto before = SettingsBeforeScan(names);

    std::vector<MidiDevice> records;
    GetAvailableDevices(records);
    std::vector<MidiDevice> shown = records;
    NormaliseGroupPositions(shown);

    std::vector<ListedSurface> surfaces;
    for (std::size_t i = 0; i < records.size(); ++i) {
        char name[kMidiEndpointNameSize] = {};
        GetMidiEndpointName(records[i], name);
        surfaces.push_back({name, records[i], before[records[i].uniqueID], shown[i].groupPosition});
    }
    return surfaces;
}

std::string SurfaceLines(const ListedSurface& surface) {
    const MidiDevice& record = surface.record;
    std::string lines = Strong(Printable(surface.name)) + "\n  " + TypeName(record.surfaceType) +
                        " (type " + std::to_string(record.surfaceType) + "), group " +
                        std::to_string(record.groupID) + ", position " +
                        std::to_string(surface.shownPosition) + ", unique ID " +
                        std::to_string(record.uniqueID) + "\n";
    if (surface.IsNew())
        lines += "  new: this scan stored its default settings, group " +
                 std::to_string(record.groupID) + " and position " +
                 std::to_string(record.groupPosition) + "\n";
    else if (surface.shownPosition != record.groupPosition)
        lines += "  stored is position " + std::to_string(record.groupPosition) +
                 "; the program would store the one above\n";
    return lines;
}

Json SurfaceToJson(const ListedSurface& surface) {
    return {{"name", surface.name},
            {"uniqueID", surface.record.uniqueID},
            {"type", surface.record.surfaceType},
            {"group", surface.record.groupID},
            {"position", surface.shownPosition},
            {"storedPosition", surface.record.groupPosition},
            {"new", surface.IsNew()}};
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
    std::cout << DetailsOf(names.Named(options.object), names);
    return kExitDone;
}

int Surfaces(const ListOptions& options) {
    const std::vector<ListedSurface> surfaces = ScanSurfaces();
    if (options.asJson) {
        Json list = Json::array();
        for (const ListedSurface& surface : surfaces)
            list.push_back(SurfaceToJson(surface));
        std::cout << DocumentText(list);
        return kExitDone;
    }
    for (const ListedSurface& surface : surfaces)
        std::cout << SurfaceLines(surface);
    if (surfaces.empty())
        std::cout << "There are no compatible surfaces.\n";
    return kExitDone;
}

} // namespace

void AddListCommands(CLI::App& program, Action& chosen) {
    CLI::App* list = program.add_subcommand("list", "Show all devices, ports and cables as a tree");
    auto listOptions = OptionsFor(list, chosen, List);
    list->add_flag("--json", listOptions->asJson, "Print the document that export writes");

    CLI::App* show = program.add_subcommand("show", "Show one object with all its properties");
    auto showOptions = OptionsFor(show, chosen, Show);
    show->add_option("OBJECT", showOptions->object, "A unique ID or a name")->required();

    CLI::App* surfaces = program.add_subcommand(
        "surfaces", "Show the control surfaces that Sorvex Mackie Setup would find, in its order");
    Explain(surfaces,
            "Like the program itself, this stores the default settings (group 0, its unique ID "
            "as\nposition) for every surface that has none yet; \"list\" stores nothing.");
    auto surfacesOptions = OptionsFor(surfaces, chosen, Surfaces);
    surfaces->add_flag("--json", surfacesOptions->asJson, "Print JSON");
}

} // namespace MidiSetup
