#pragma once

namespace Kestrin {

/// Modifier bits that every input hook is given; no other bits are ever set.
enum Modifiers : unsigned int {
    kModCommand = 0x100,
    kModShift = 0x200,
    kModOption = 0x800,
    kModControl = 0x1000,
};

/// Key codes that DoTextInput is given. A key that is none of these has the code kKeyNone.
enum KeyCode : unsigned char {
    kKeyNone = 0,
    kKeyHome = 1,
    kKeyEnter = 3,
    kKeyEnd = 4,
    kKeyBackspace = 8,
    kKeyReturn = 13,
    kKeyEscape = 27,
    kKeyLeft = 28,
    kKeyRight = 29,
    kKeyUp = 30,
    kKeyDown = 31,
    kKeyForwardDelete = 127,
};

/// The display server's code of the last key that went down, 0 before the first.
extern unsigned gLastNativeKeyCode;

} // namespace Kestrin
