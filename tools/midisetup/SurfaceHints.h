#pragma once

#include "tools/midisetup/Properties.h"
#include "tools/midisetup/Studio.h"

#include <optional>
#include <string>

/// What a person who sets up surfaces should be told.
namespace MidiSetup {

/// Why `value` cannot be the group or the position of the object with this unique ID; nothing where
/// it can, and for any other key. The unique ID as position is what a scan stores: none chosen.
std::optional<std::string> FaultInSetting(MIDIUniqueID id, const std::string& key,
                                          const PropertyValue& value);

/// What is odd about the manufacturer and model of an external device: it is taken for another
/// surface than its model says, or for none although it is nearly called like one. `word` names the
/// device on a command line.
std::optional<std::string> ModelHint(const Device& device, const std::string& word);

} // namespace MidiSetup
