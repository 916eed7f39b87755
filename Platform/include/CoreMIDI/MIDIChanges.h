#pragma once

#include <CoreMIDI/MIDIDatabase.h>

#include <utility>

/// Several changes that are stored together: they begin with its construction, on this thread, and
/// are abandoned with its destruction unless End was called.
class MIDIChanges {
public:
    MIDIChanges()
        : fStatus(KestrinMIDIBeginChanges())
        , fIsOpen(fStatus == noErr) {}
    ~MIDIChanges() {
        if (fIsOpen)
            KestrinMIDIAbandonChanges();
    }
    MIDIChanges(const MIDIChanges&) = delete;
    MIDIChanges& operator=(const MIDIChanges&) = delete;

    /// Whether they could be begun.
    OSStatus Status() const { return fStatus; }
    /// Whether all is stored; call it once. Where they could not be begun, the reason for that.
    OSStatus End() {
        if (std::exchange(fIsOpen, false))
            fStatus = KestrinMIDIEndChanges();
        return fStatus;
    }

private:
    OSStatus fStatus;
    bool fIsOpen;
};
