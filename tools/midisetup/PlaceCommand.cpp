#include "Surfaces/SurfaceGroups.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Properties.h"
#include "tools/midisetup/Usage.h"

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
            others +=
                Message("%1 has that place, too; give it another one.", Printable(device.name)) +
                "\n";
    }
    return others;
}

std::string Place(const PlaceOptions& options) {
    const Studio studio = ReadStudio();
    const ObjectNames names(studio);
    const Device* const surface = names.Named(options.surface).device;
    if (surface == nullptr || !IsSurface(*surface))
        throw Failure(Message("\"%1\" is no control surface; \"midisetup surfaces\" shows which "
                              "there are",
                              Printable(options.surface)));
    SetProperty(surface->reference, kGroupPositionKey, options.position);
    SetProperty(surface->reference, kGroupIDKey, options.group);
    return Message("%1: group %2, position %3", Printable(surface->name), options.group,
                   options.position) +
           "\n" + OthersAt(options, studio, *surface);
}

} // namespace

void AddPlaceCommand(CLI::App& program, Action& chosen) {
    CLI::App* place =
        program.add_subcommand("place", Message("Give a surface its group and position"));
    Explain(place, Message("Both are whole numbers from 0 to 127. The surface may be unplugged."));
    auto options = OptionsForChange(place, chosen, Place);
    place->add_option("SURFACE", options->surface, Message("A unique ID or a name"))->required();
    for (CLI::Option* const number :
         {place->add_option("GROUP", options->group, Message("The group")),
          place->add_option("POSITION", options->position, Message("The place within it"))})
        Restrict(number->required(), kFirstGroupSetting, kLastGroupSetting);
}

} // namespace MidiSetup
