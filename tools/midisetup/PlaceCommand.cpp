#include "Surfaces/SurfaceGroups.h"

#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"

namespace MidiSetup {

namespace {

struct PlaceOptions {
    std::string surface;
    SInt32 group = 0;
    SInt32 position = 0;
};

std::string OthersAt(const PlaceOptions& place, const Studio& studio, const Device& surface) {
    std::string others;
    for (const Device& device : studio.devices) {
        const GroupSettings settings = StoredSettings(device.reference);
        const bool isThere = settings.group == place.group && settings.position == place.position;
        if (isThere && &device != &surface && IsSurface(device))
            others += Printable(device.name) + " has that place, too; give it another one.\n";
    }
    return others;
}

std::string Place(const PlaceOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const Device* const surface = names.Named(options.surface).device;
    if (surface == nullptr || !IsSurface(*surface))
        throw Failure("\"" + Printable(options.surface) +
                      R"(" is no control surface; "midisetup surfaces" shows which there are)");
    SetProperty(surface->reference, kGroupPositionKey, options.position);
    SetProperty(surface->reference, kGroupIDKey, options.group);
    return Printable(surface->name) + ": group " + std::to_string(options.group) + ", position " +
           std::to_string(options.position) + "\n" + OthersAt(options, studio, *surface);
}

} // namespace

void AddPlaceCommand(CLI::App& program, Action& chosen) {
    CLI::App* place = program.add_subcommand("place", "Give a surface its group and position");
    Explain(place, "Both are whole numbers from 0 to 127. The surface may be unplugged.");
    auto options = OptionsForChange(place, chosen, Place);
    place->add_option("SURFACE", options->surface, "A unique ID or a name")->required();
    const CLI::Range range(kFirstGroupSetting, kLastGroupSetting);
    place->add_option("GROUP", options->group, "The group")->required()->check(range);
    place->add_option("POSITION", options->position, "The place within it")
        ->required()
        ->check(range);
}

} // namespace MidiSetup
