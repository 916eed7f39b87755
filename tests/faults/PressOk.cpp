// press-ok SURFACE TIMES [FIRST]: stores what Ok stores, TIMES times, for the surface that is the
// number SURFACE of the list, or for "all". Tells each number that was confirmed, which group and
// position stand for.
#include "Surfaces/MidiObject.h"
#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int kPlaces = kLastGroupSetting + 1;

/// Both change with each number, so that a half of one is none.
void Put(MidiDevice& surface, int number) {
    surface.groupID = number % kPlaces;
    surface.groupPosition = (number / kPlaces + surface.groupID) % kPlaces;
}

int Fail(CFStringRef reason) {
    std::cerr << (reason ? MidiObject::FromText(reason) : "There are no surfaces.") << std::endl;
    return 1;
}

} // namespace

int main(int count, char** words) {
    if (count < 3)
        return 2;
    std::vector<MidiDevice> surfaces;
    GetAvailableDevices(surfaces);
    if (surfaces.empty())
        return Fail(KestrinMIDICopyDatabaseProblem());
    if (words[1] != std::string("all"))
        surfaces = {surfaces.at(std::strtoul(words[1], nullptr, 10))};
    std::cout << "surface " << surfaces.at(0).uniqueID << std::endl;
    const int first = count > 3 ? std::atoi(words[3]) : 1;
    for (int number = first; number < first + std::atoi(words[2]); ++number) {
        for (MidiDevice& surface : surfaces)
            Put(surface, number);
        if (const OSStatus status = WriteGroupSettings(surfaces); status != noErr)
            return Fail(KestrinMIDICopyStatusText(status));
        std::cout << "stored " << number << std::endl;
    }
    return 0;
}
