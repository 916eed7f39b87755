#pragma once

#include "tools/midisetup/ObjectNaming.h"

#include <string>

namespace MidiSetup {

/// The studio for a person: every device with its ports, what is cabled to them, and the group and
/// position of the surfaces.
std::string TreeOf(const Studio& studio, const ObjectNames& names);

/// One object with all its properties, also those that it has from its owners.
std::string DetailsOf(const NamedObject& object, const ObjectNames& names);

} // namespace MidiSetup
