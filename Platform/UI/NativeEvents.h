#pragma once

#include "Platform/UI/CGGeometry.h"

#include <string>

namespace Kestrin {

/// Bits of `modifierFlags`. Control is the Control key, Command the Super key, Option the Alt key.
/// Other bits may be set and mean nothing here.
enum NativeModifier : unsigned {
    kNativeShift = 1u << 17,
    kNativeControl = 1u << 18,
    kNativeOption = 1u << 19,
    kNativeCommand = 1u << 20,
};

/// Characters that stand for keys which have none of their own.
enum NativeFunctionKey : char16_t {
    kNativeEnter = 0x0003,
    kNativeTab = 0x0009,
    kNativeReturn = 0x000D,
    kNativeBackTab = 0x0019,
    kNativeEscape = 0x001B,
    kNativeBackspace = 0x007F,
    kNativeUpArrow = 0xF700,
    kNativeDownArrow = 0xF701,
    kNativeLeftArrow = 0xF702,
    kNativeRightArrow = 0xF703,
    kNativeFirstFunctionKey = 0xF704,
    kNativeInsert = 0xF727,
    kNativeForwardDelete = 0xF728,
    kNativeHome = 0xF729,
    kNativeEnd = 0xF72B,
    kNativePageUp = 0xF72C,
    kNativePageDown = 0xF72D,
    kNativeDeleteCharacter = 0xF73E,
};

/// The two key codes that do not depend on the display server.
constexpr unsigned kNativeEscapeKeyCode = 53;
constexpr unsigned kNativeBackspaceKeyCode = 51;

/// One event of the pointer.
struct NativeMouseEvent {
    CGPoint where{};            ///< in the receiving view: points, y down from its top
    unsigned modifierFlags = 0; ///< NativeModifier bits
    int clickCount = 0;         ///< 2 for the second press of a double click
    double deltaX = 0;          ///< wheel only: one notch is 1, positive to the left
    double deltaY = 0;          ///< wheel only: one notch is 1, positive away from the user
};

/// One key that went down, or repeats.
struct NativeKeyEvent {
    /// UTF-8 of the text that the key types. Keys that edit or navigate and shortcuts type none.
    std::string characters;
    /// UTF-16 of what the key stands for, Shift applied and every other modifier not; the keys
    /// without a character of their own are NativeFunctionKey values.
    std::u16string charactersIgnoringModifiers;
    /// kNativeEscapeKeyCode, kNativeBackspaceKeyCode, else the display server's own.
    unsigned keyCode = 0;
    unsigned modifierFlags = 0; ///< NativeModifier bits
};

} // namespace Kestrin
