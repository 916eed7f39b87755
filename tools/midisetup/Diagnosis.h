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
std::vector<Problem> FindSharedPlaces(const Studio& studio);

} // namespace MidiSetup
