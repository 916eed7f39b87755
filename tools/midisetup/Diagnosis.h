#pragma once

#include "tools/midisetup/ObjectNaming.h"

#include <string>
#include <vector>

namespace MidiSetup {

/// Something that is wrong, and how to mend it; a sentence or more each.
struct Problem {
    std::string what;
    std::string remedy;
};

/// Cables that lead to objects that are gone.
std::vector<Problem> FindLooseCables(const ObjectNames& names);

/// Surfaces that the program cannot find: those cabled nowhere, or in one direction only.
std::vector<Problem> FindUnreachableSurfaces(const Studio& studio, const ObjectNames& names);

/// Surfaces that share one position of one group.
std::vector<Problem> FindSharedPlaces(const Studio& studio, const ObjectNames& names);

/// Groups and positions of another type or range.
std::vector<Problem> FindWrongSettings(const ObjectNames& names);

// What need not be wrong, but is good to know.

/// Surfaces without a position that a person chose.
std::vector<Problem> FindUnplacedSurfaces(const Studio& studio, const ObjectNames& names);

/// External devices that are taken for another surface than their model says, or for none.
std::vector<Problem> FindOddModels(const Studio& studio, const ObjectNames& names);

/// Units without a serial number: those that are plugged in, and what unplugged ones left.
std::vector<Problem> FindUnitsWithoutSerial(const Studio& studio);

} // namespace MidiSetup
