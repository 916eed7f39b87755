#pragma once

#include "Surfaces/PlacedSurfaces.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace MidiSetup {

/// What Ardour is to know of one group: a main unit and its extenders, in the order of their
/// places.
struct ArdourDevice {
    std::string name;
    int units = 0;
    int mainPlace = 0; ///< counted from 1
};

/// The group as Ardour can use it. Throws Failure where the group is empty, where it has no main
/// unit or several, or units that speak another protocol.
ArdourDevice ArdourDeviceOf(SInt32 group);

/// The description in the form that Ardour reads from "mcp/*.device" in its configuration folder.
std::string ArdourDeviceText(const ArdourDevice& device);

/// The folder in which this user's newest Ardour looks for such descriptions; nothing where there
/// is none.
std::optional<std::filesystem::path> ArdourDeviceFolder();

/// The ending of the name of the port with which Ardour reaches the unit at a place: "" for the
/// main unit, " ext 1" for an extender at place 1.
std::string ArdourPortEnding(const ArdourDevice& device, int place);

} // namespace MidiSetup
