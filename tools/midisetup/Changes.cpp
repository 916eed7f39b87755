#include "tools/midisetup/Changes.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Properties.h"
#include "tools/midisetup/Studio.h"

#include <CoreMIDI/MIDIChanges.h>

#include <iostream>

namespace MidiSetup {

int InOneChange(const std::function<std::string()>& change) {
    RequireDatabase();
    MIDIChanges changes;
    Check(changes.Status(), Message("cannot change the database"));
    const std::string told = change();
    Check(changes.End(), Message("cannot store the change; nothing was changed"));
    std::cout << told;
    return kExitDone;
}

} // namespace MidiSetup
