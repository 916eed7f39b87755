// scan-loop STOP_FILE: scans for surfaces over and over, in one process, until the file is there.
// Every scan must hold whole and distinct surfaces, whatever is plugged in and out meanwhile.
// Prints how many scans they were, and fails if a scan did not hold.

#include "Surfaces/SurfaceDiscovery.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>

namespace {

bool IsWhole(const MidiDevice& surface) {
    char name[kMidiEndpointNameSize] = "";
    GetMidiEndpointName(surface, name);
    return surface.sourceEndpoint != 0 && surface.destinationEndpoint != 0 &&
           surface.surfaceType != 0 && name[0] != '\0';
}

bool AllAreWholeAndDistinct(const std::vector<MidiDevice>& surfaces) {
    std::set<MIDIUniqueID> met;
    return std::all_of(surfaces.begin(), surfaces.end(), [&met](const MidiDevice& surface) {
        return IsWhole(surface) && met.insert(surface.uniqueID).second;
    });
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2)
        return 2;
    std::vector<MidiDevice> surfaces;
    int scans = 0;
    int broken = 0;
    while (!std::filesystem::exists(arguments[1])) {
        GetAvailableDevices(surfaces);
        broken += AllAreWholeAndDistinct(surfaces) ? 0 : 1;
        ++scans;
    }
    std::printf("%d scans, %d of them broken\n", scans, broken);
    return broken == 0 ? 0 : 1;
}
