#pragma once

#include "Platform/UI/NativeEvents.h"

#include <QtCore/qnamespace.h>

class QKeyEvent;

namespace Kestrin {

/// NativeModifier bits of the toolkit's modifiers.
unsigned NativeModifiersOf(Qt::KeyboardModifiers modifiers);

/// Whether a key does nothing by itself: such a key is no key press to the framework.
bool IsModifierKey(const QKeyEvent& event);

/// A key press as the framework knows it.
NativeKeyEvent NativeKeyEventOf(const QKeyEvent& event);

} // namespace Kestrin
