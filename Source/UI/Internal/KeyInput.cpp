#include "UI/Internal/KeyInput.h"

namespace Kestrin {

namespace {

unsigned int Moved(unsigned nativeFlags, unsigned from, unsigned int to) {
    return nativeFlags & from ? to : 0;
}

unsigned char CodeOfCharacter(char16_t character, unsigned nativeKeyCode) {
    switch (character) {
    case kNativeUpArrow:
        return kKeyUp;
    case kNativeDownArrow:
        return kKeyDown;
    case kNativeLeftArrow:
        return kKeyLeft;
    case kNativeRightArrow:
        return kKeyRight;
    case kNativeForwardDelete:
    case kNativeDeleteCharacter:
        return kKeyForwardDelete;
    case kNativeHome:
        return kKeyHome;
    case kNativeEnd:
        return kKeyEnd;
    case kNativeEnter:
        return kKeyEnter;
    case kNativeReturn:
        return kKeyReturn;
    case u'\b':
        return kKeyBackspace;
    // The same characters come from other keys held with Control, which are not these keys.
    case kNativeEscape:
        return nativeKeyCode == kNativeEscapeKeyCode ? kKeyEscape : kKeyNone;
    case kNativeBackspace:
        return nativeKeyCode == kNativeBackspaceKeyCode ? kKeyBackspace : kKeyNone;
    default:
        return kKeyNone;
    }
}

} // namespace

unsigned gLastNativeKeyCode = 0;

unsigned int ModifiersOf(unsigned nativeFlags) {
    return Moved(nativeFlags, kNativeShift, kModShift) |
           Moved(nativeFlags, kNativeControl, kModControl) |
           Moved(nativeFlags, kNativeOption, kModOption) |
           Moved(nativeFlags, kNativeCommand, kModCommand);
}

KeyInput TakeKeyInput(const NativeKeyEvent& event) {
    gLastNativeKeyCode = event.keyCode;
    KeyInput input{UString(event.characters, UString::kUTF8), ModifiersOf(event.modifierFlags)};
    if (event.charactersIgnoringModifiers.size() == 1)
        input.keyCode = CodeOfCharacter(event.charactersIgnoringModifiers.front(), event.keyCode);
    return input;
}

} // namespace Kestrin
