#include "Platform/CoreFoundation/Text.h"
#include "Platform/CoreMIDI/Interface/Service.h"
#include "Platform/CoreMIDI/Store/Repair.h"

#include <CoreMIDI/MIDIDatabase.h>

using namespace KestrinMIDI;

namespace {

CFStringRef TextOrNull(const std::string& text) {
    return text.empty() ? nullptr : MakeString(text);
}

} // namespace

KestrinMIDIDatabaseState KestrinMIDIGetDatabaseState(void) {
    return InSession(kKestrinMIDIDatabaseUnreachable,
                     [](ServiceSession& session) { return session.Problem().state; });
}

CFStringRef KestrinMIDICopyDatabaseProblem(void) {
    return InSession(nullptr,
                     [](ServiceSession& session) { return TextOrNull(session.Problem().text); });
}

CFStringRef KestrinMIDICopyDatabaseDamage(void) {
    return InSession(nullptr, [](ServiceSession& session) {
        if (!session.File())
            return TextOrNull(session.Problem().text);
        return TextOrNull(DamageIn(session.File()->Connection(), session.RowsLost()));
    });
}

CFStringRef KestrinMIDICopyDatabasePath(void) {
    return Guarded(nullptr, [] { return MakeString(DatabasePath().string()); });
}

OSStatus KestrinMIDIRepairDatabase(CFStringRef* outSavedAs, KestrinMIDIRepairCounts* outCounts) {
    return Guarded(kMIDIUnknownError, [&] {
        if (ServiceSession().IsChanging())
            return OSStatus(kMIDINotPermitted);
        const std::filesystem::path path = DatabasePath();
        std::filesystem::path savedAs;
        KestrinMIDIRepairCounts counts{};
        MIDIRestart();
        const OSStatus status = RepairDatabase(path, savedAs, counts);
        MIDIRestart();
        if (status != noErr)
            return status;
        if (outSavedAs)
            *outSavedAs = MakeString(savedAs.string());
        if (outCounts)
            *outCounts = counts;
        return OSStatus(noErr);
    });
}

KestrinMIDISequencerState KestrinMIDIGetSequencerState(void) {
    const SequencerState state = InSession(
        SequencerState::Missing, [](ServiceSession& session) { return session.Sequencer(); });
    switch (state) {
    case SequencerState::Ready:
        return kKestrinMIDISequencerReady;
    case SequencerState::NotPermitted:
        return kKestrinMIDISequencerNotPermitted;
    case SequencerState::Missing:
        break;
    }
    return kKestrinMIDISequencerMissing;
}
