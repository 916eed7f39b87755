#pragma once

#include "Strings/UString.h"
#include "UI/KeyCodes.h"

#include "Platform/UI/NativeEvents.h"

namespace Kestrin {

/// A key press as DoTextInput and its like are given it.
struct KeyInput {
    UString text;
    unsigned int modifiers = 0;
    unsigned char keyCode = kKeyNone;
};

/// What a native key press is to the framework. Only a key that stands for exactly one character
/// has a key code. The native code is kept as the last one.
KeyInput TakeKeyInput(const NativeKeyEvent& event);

/// Modifiers bits of NativeModifier bits.
unsigned int ModifiersOf(unsigned nativeFlags);

} // namespace Kestrin
