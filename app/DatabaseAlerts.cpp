#include "app/DatabaseAlerts.h"

#include "Resources/LocalizedStrings.h"
#include "Strings/PlatformStrings.h"
#include "UI/MessageBox.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreMIDI/MIDIDatabase.h>

#include <string>

using namespace Kestrin;

namespace {

const UString kParagraphEnd = "\n\n"_u;

/// What is wrong and what to do about it; "%" stands for the file.
UString TextOn(KestrinMIDIDatabaseState state) {
    switch (state) {
    case kKestrinMIDIDatabaseNoFolder:
        return LookupString("The MIDI database % can't be made.\n\n"
                            "Make its folder writable for you, then start this program again.");
    case kKestrinMIDIDatabaseReadOnly:
        return LookupString("The MIDI database % can't be written.\n\nMake the file and its folder "
                            "writable for you, then start this program again.");
    case kKestrinMIDIDatabaseDamaged:
        return LookupString("The MIDI database % is damaged.\n\nIn a terminal, \"midisetup doctor "
                            "--repair\" sets the file aside and saves what can be read of it.");
    case kKestrinMIDIDatabaseNewer:
        return LookupString("The MIDI database % was written by a newer version.\n\n"
                            "Install the newer version of this program. The file was left as it "
                            "is.");
    case kKestrinMIDIDatabaseForeign:
        return LookupString("The file % is a database of some other program.\n\n"
                            "Move it elsewhere, then start this program again. The file was left "
                            "as it is.");
    case kKestrinMIDIDatabaseLocked:
        return LookupString("The MIDI database % is kept locked by another program.\n\n"
                            "End that program, then start this one again.");
    case kKestrinMIDIDatabaseUnreachable:
        return LookupString(
            "The MIDI database % can't be read or written.\n\nMake room on the disk "
            "or look after its health, then start this program again.");
    default:
        return LookupString("The MIDI database % can't be used.\n\n"
                            "In a terminal, \"midisetup doctor\" says what to do about it.");
    }
}

/// An alert shows as many bytes of a text as the text has units. Blanks behind it give a path
/// beyond ASCII the bytes that it needs.
void Alert(UString text, const UString& title) {
    const std::size_t bytes = text.utf8_str().size();
    if (bytes > text.length())
        text.append(UString(std::string(bytes - text.length(), ' '), UString::kASCII));
    MessageBox(text, title, kMessageBoxCritical);
}

UString TextOf(CFStringRef owned) {
    const CFHolder<CFStringRef> text(owned);
    return text ? CFToUString(text.Get()) : UString();
}

UString TextOnRefusal(KestrinMIDIDatabaseState state) {
    const UString text = TextOn(state);
    const std::size_t mark = text.find("%"_u, 0);
    return UString(text, 0, mark)
        .append(TextOf(KestrinMIDICopyDatabasePath()))
        .append(UString(text, mark + 1));
}

UString ReasonOf(OSStatus status) {
    const KestrinMIDIDatabaseState state = KestrinMIDIGetDatabaseState();
    if (state != kKestrinMIDIDatabaseReady)
        return TextOnRefusal(state);
    // Keys: "Another program keeps the MIDI database locked.",
    // "The disk with the MIDI database is full.",
    // "The MIDI database can only be read, not written.",
    // "The disk with the MIDI database can't be read or written.",
    // "The MIDI database is damaged."
    return LookupString(TextOf(KestrinMIDICopyStatusText(status)));
}

} // namespace

void TellWhyDatabaseIsRefused() {
    const KestrinMIDIDatabaseState state = KestrinMIDIGetDatabaseState();
    if (state == kKestrinMIDIDatabaseReady)
        return;
    Alert(TextOnRefusal(state), LookupString("Can't use the database of MIDI devices"));
}

void TellThatNothingWasStored(OSStatus why) {
    UString text = LookupString("No group and no position of any surface was changed.");
    text.append(kParagraphEnd).append(ReasonOf(why));
    text.append(kParagraphEnd);
    text.append(
        LookupString("Press Ok in the settings window to try again. Cancel leaves all as it "
                     "was."));
    Alert(text, LookupString("Can't store the settings"));
}
