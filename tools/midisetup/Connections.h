#pragma once

#include "tools/midisetup/ObjectNaming.h"
#include "tools/midisetup/Properties.h"

#include <vector>

namespace MidiSetup {

/// What is cabled to a port, as the port's connection property tells it: nothing, one unique ID, or
/// data that packs several in the host's byte order.
std::vector<MIDIUniqueID> ConnectionsOf(MIDIObjectRef port);

/// The unique IDs that a value of that property holds.
std::vector<MIDIUniqueID> ConnectionsIn(const PropertyValue& value);

/// The value that stands for these unique IDs; `ids` is not empty.
PropertyValue ConnectionValue(const std::vector<MIDIUniqueID>& ids);

/// Makes `ids` the port's connections. Does nothing where they are that already. Throws Failure.
void SetConnections(MIDIObjectRef port, const std::vector<MIDIUniqueID>& ids);

/// The sources and destinations that a connection of `port` concerns: those of the whole port, also
/// when one direction of it was named. A program's port is its source and its destination of one
/// name; where several bear that, the named one alone.
std::vector<Endpoint> EndpointsOf(const NamedObject& port, const Studio& studio);

} // namespace MidiSetup
