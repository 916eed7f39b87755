#include "Platform/CoreFoundation/Text.h"
#include "Platform/CoreMIDI/Interface/Service.h"

#include <CoreMIDI/MIDIDatabase.h>

using namespace KestrinMIDI;

namespace {

const char* KnownText(OSStatus status) {
    switch (status) {
    case kKestrinMIDIErrLocked:
        return Sentence("Another program keeps the MIDI database locked.");
    case kKestrinMIDIErrFull:
        return Sentence("The disk with the MIDI database is full.");
    case kKestrinMIDIErrReadOnly:
        return Sentence("The MIDI database can only be read, not written.");
    case kKestrinMIDIErrDisk:
        return Sentence("The disk with the MIDI database can't be read or written.");
    case kKestrinMIDIErrDamaged:
        return Sentence("The MIDI database is damaged.");
    case kKestrinMIDIErrAbandoned:
        return Sentence("The changes were abandoned.");
    case kMIDIServerStartErr:
        return Sentence("The MIDI database can't be used.");
    case kMIDIUnknownProperty:
        return Sentence("There is no such property.");
    case kMIDIWrongPropertyType:
        return Sentence("The property has another type.");
    case kMIDIObjectNotFound:
        return Sentence("There is no such MIDI object any more.");
    case kMIDIIDNotUnique:
        return Sentence("Another MIDI object has that unique ID.");
    case kMIDINotPermitted:
        return Sentence("The MIDI service does not permit it.");
    default:
        return nullptr;
    }
}

std::string StatusText(OSStatus status) {
    if (status == kMIDIServerStartErr) {
        const ServiceSession session;
        if (!session.Problem().text.empty())
            return session.Problem().text;
    }
    if (const char* const known = KnownText(status))
        return known;
    return Sentence("The MIDI service failed for an unknown reason (%2).", {},
                    std::to_string(status));
}

} // namespace

OSStatus KestrinMIDIBeginChanges(void) {
    return InSession(kMIDIUnknownError,
                     [](ServiceSession& session) { return session.BeginChanges(); });
}

OSStatus KestrinMIDIEndChanges(void) {
    return InSession(kMIDIUnknownError,
                     [](ServiceSession& session) { return session.EndChanges(); });
}

void KestrinMIDIAbandonChanges(void) {
    InSession(false, [](ServiceSession& session) {
        session.AbandonChanges();
        return true;
    });
}

OSStatus KestrinMIDIBeginReading(void) {
    return InSession(kMIDIUnknownError, [](ServiceSession& session) {
        session.BeginReading();
        return noErr;
    });
}

void KestrinMIDIEndReading(void) {
    InSession(false, [](ServiceSession& session) {
        session.EndReading();
        return true;
    });
}

CFStringRef KestrinMIDICopyStatusText(OSStatus status) {
    return Guarded(nullptr,
                   [status] { return status == noErr ? nullptr : MakeString(StatusText(status)); });
}
