#include "tools/midisetup/Ardour.h"

#include "Surfaces/SurfaceModels.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"

#include <algorithm>
#include <cstdlib>

namespace MidiSetup {

namespace {

std::vector<PlacedSurface> SurfacesOf(SInt32 group) {
    std::vector<PlacedSurface> surfaces = PlacedSurfaces();
    std::erase_if(surfaces, [group](const PlacedSurface& one) { return one.group != group; });
    if (surfaces.empty())
        throw Failure(Message("no surface has a place in group %1; \"midisetup place SURFACE GROUP "
                              "POSITION\" gives it one",
                              group));
    return surfaces;
}

bool IsMain(const PlacedSurface& surface) {
    return surface.type == kSurfaceTypeMackieControl;
}

/// The number behind "ardour" in a folder's name, or -1.
int VersionOf(const std::filesystem::path& folder) {
    const std::string name = folder.filename().string();
    const std::string digits = name.starts_with("ardour") ? name.substr(6) : "";
    const bool isNumber = !digits.empty() && digits.size() < 4 &&
                          digits.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? std::stoi(digits) : -1;
}

std::filesystem::path ConfigurationHome() {
    if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder && folder[0] == '/')
        return folder;
    const char* const home = std::getenv("HOME");
    return std::filesystem::path(home ? home : "/") / ".config";
}

} // namespace

ArdourDevice ArdourDeviceOf(SInt32 group) {
    const std::vector<PlacedSurface> surfaces = SurfacesOf(group);
    const auto stranger = std::ranges::find_if(surfaces, [](const PlacedSurface& one) {
        return !IsMain(one) && one.type != kSurfaceTypeMackieControlExtender;
    });
    if (stranger != surfaces.end())
        throw Failure(Message("Ardour cannot use %1 in group %2: it is no Mackie Control; give it "
                              "another group",
                              Printable(stranger->name), group));
    const auto mains = std::ranges::count_if(surfaces, IsMain);
    if (mains == 0)
        throw Failure(Message("Ardour needs one main unit in a group, and group %1 has none; "
                              "\"midisetup place SURFACE GROUP POSITION\" moves a surface",
                              group));
    if (mains > 1)
        throw Failure(Message("Ardour needs one main unit in a group, and group %1 has %2; "
                              "\"midisetup place SURFACE GROUP POSITION\" moves a surface",
                              group, mains));
    const auto main = std::ranges::find_if(surfaces, IsMain);
    return {SurfaceClientName(group), static_cast<int>(surfaces.size()),
            static_cast<int>(main - surfaces.begin()) + 1};
}

std::string ArdourDeviceText(const ArdourDevice& device) {
    const auto line = [](const std::string& element, const std::string& value) {
        return "  <" + element + " value=\"" + value + "\"/>\n";
    };
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MackieProtocolDevice>\n" +
                       line("Name", device.name) + line("Strips", "8") +
                       line("Extenders", std::to_string(device.units - 1)) +
                       line("MasterPosition", std::to_string(device.mainPlace));
    // What every main unit of the table of models has. Most units work without the handshake.
    for (const char* part :
         {"MasterFader", "TimecodeDisplay", "TwoCharacterDisplay", "GlobalControls", "JogWheel",
          "TouchSenseFaders", "NoHandShake", "HasMeters"})
        text += line(part, "yes");
    return text + "</MackieProtocolDevice>\n";
}

std::optional<std::filesystem::path> ArdourDeviceFolder() {
    std::error_code none;
    std::filesystem::path newest;
    for (const auto& entry : std::filesystem::directory_iterator(ConfigurationHome(), none)) {
        if (VersionOf(entry.path()) > VersionOf(newest))
            newest = entry.path();
    }
    return newest.empty() ? std::nullopt : std::optional(newest / "mcp");
}

std::string ArdourPortEnding(const ArdourDevice& device, int place) {
    return place == device.mainPlace ? "" : " ext " + std::to_string(place);
}

} // namespace MidiSetup
