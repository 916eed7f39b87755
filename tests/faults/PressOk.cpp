// press-ok SURFACE TIMES [FIRST]: stores what Ok stores, TIMES times, for the surface that is the
// number SURFACE of the list, or for "all". Tells each number that was confirmed, which group and
// position stand for.
#include "Surfaces/MidiObject.h"
#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"

#include <CoreMIDI/MIDIChanges.h>

#include <algorithm>
#include <iostream>

namespace {

int Number(const MidiDevice& surface) {
    return surface.groupID + 128 * ((surface.groupPosition - surface.groupID + 128) % 128);
}

void Put(int number, MidiDevice& surface) {
    // Both change with each number, so that a half of one is none.
    surface.groupID = number % 128;
    surface.groupPosition = (number / 128 + surface.groupID) % 128;
}

/// Nobody else changes the surface: it must hold what was confirmed.
OSStatus PutNext(int number, MidiDevice& surface) {
    MIDIChanges changes;
    MidiDevice found = surface;
    ReadGroupSettings(MidiObject::WithID(surface.uniqueID)->reference, found);
    if (changes.Status() == noErr && Number(found) != Number(surface))
        std::cerr << Number(surface) << " was confirmed and is lost" << std::endl;
    Put(number, surface);
    const OSStatus status = WriteGroupSettings({surface});
    return status == noErr ? changes.End() : status;
}

} // namespace

int main(int count, char** words) {
    std::ios::sync_with_stdio(false); // so that DiskFaults.c meets what is said
    const std::vector<std::string> arguments(words, words + count);
    std::vector<MidiDevice> surfaces;
    GetAvailableDevices(surfaces);
    CFStringRef problem = KestrinMIDICopyDatabaseProblem();
    const bool isAll = arguments.at(1) == "all";
    if (!problem && !isAll)
        surfaces = {surfaces.at(std::stoul(arguments[1]))};
    if (!problem)
        std::cout << "surface " << surfaces.at(0).uniqueID << std::endl;
    const int first = count > 3 ? std::stoi(arguments[3]) : 1;
    for (int number = first; !problem && number < first + std::stoi(arguments.at(2)); ++number) {
        if (isAll)
            std::for_each(surfaces.begin(), surfaces.end(), [&](auto& one) { Put(number, one); });
        const OSStatus status =
            isAll ? WriteGroupSettings(surfaces) : PutNext(number, surfaces.front());
        problem = KestrinMIDICopyStatusText(status);
        if (!problem)
            std::cout << "stored " << number << std::endl;
    }
    if (problem)
        std::cerr << MidiObject::FromText(problem) << std::endl;
    return problem ? 1 : 0;
}
