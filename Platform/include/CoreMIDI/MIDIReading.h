#pragma once

#include <CoreMIDI/MIDIDatabase.h>

/// Reading from its construction to its destruction: what is read is of one moment.
class MIDIReading {
public:
    MIDIReading() = default;
    ~MIDIReading() {
        if (fIsOpen)
            KestrinMIDIEndReading();
    }
    MIDIReading(const MIDIReading&) = delete;
    MIDIReading& operator=(const MIDIReading&) = delete;

private:
    const bool fIsOpen = KestrinMIDIBeginReading() == noErr;
};
