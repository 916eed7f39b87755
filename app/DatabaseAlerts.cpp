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

UString AdviceOn(KestrinMIDIDatabaseState state) {
    switch (state) {
    case kKestrinMIDIDatabaseNoFolder:
        return LookupString("Make the folder writable for you, then start this program again.");
    case kKestrinMIDIDatabaseReadOnly:
        return LookupString("Make the file and its folder writable for you, then start this "
                            "program again.");
    case kKestrinMIDIDatabaseDamaged:
        return LookupString("In a terminal, \"midisetup doctor --repair\" sets the file aside and "
                            "saves what can be read of it.");
    case kKestrinMIDIDatabaseNewer:
        return LookupString("Install the newer version of this program. The file was left as it "
                            "is.");
    case kKestrinMIDIDatabaseForeign:
        return LookupString("Move it elsewhere, then start this program again. The file was left "
                            "as it is.");
    case kKestrinMIDIDatabaseLocked:
        return LookupString("End the program that keeps it locked, then start this program again.");
    case kKestrinMIDIDatabaseUnreachable:
        return LookupString("Make room on the disk or look after its health, then start this "
                            "program again.");
    default:
        return LookupString("In a terminal, \"midisetup doctor\" says what to do about it.");
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

} // namespace

void TellWhyDatabaseIsRefused() {
    const KestrinMIDIDatabaseState state = KestrinMIDIGetDatabaseState();
    if (state == kKestrinMIDIDatabaseReady)
        return;
    UString text = TextOf(KestrinMIDICopyDatabaseProblem());
    text.append(kParagraphEnd).append(AdviceOn(state));
    Alert(text, LookupString("Can't use the database of MIDI devices"));
}

void TellThatNothingWasStored(OSStatus why) {
    UString text = LookupString("No group and no position of any surface was changed.");
    text.append(kParagraphEnd).append(TextOf(KestrinMIDICopyStatusText(why)));
    text.append(kParagraphEnd);
    text.append(
        LookupString("Press Ok in the settings window to try again. Cancel leaves all as it "
                     "was."));
    Alert(text, LookupString("Can't store the settings"));
}
