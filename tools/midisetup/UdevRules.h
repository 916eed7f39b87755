#pragma once

#include <CoreMIDI/CoreMIDI.h>

#include <string>
#include <vector>

namespace MidiSetup {

/// A USB sound card as udev can tell it from others.
struct KnownCard {
    std::string name;         ///< the device's
    SInt32 vendorProduct = 0; ///< the vendor ID in the upper 16 bits
    std::string serial;       ///< empty where the unit has none
    std::string path;         ///< the controller and the ports, "0000:00:14.0-1.4"
};

/// The USB cards that are plugged in now.
std::vector<KnownCard> PluggedCards();

/// Rules after udev(7) that give each card an ID of its own, at most 15 letters and digits made
/// from its name, wherever it is plugged in; a unit whose serial number does not tell it from the
/// others is known by the port that it is plugged into.
std::string UdevRulesFor(const std::vector<KnownCard>& cards);

} // namespace MidiSetup
