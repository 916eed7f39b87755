#pragma once

#include "Platform/UI/NativeEvents.h"

#include <QtCore/qnamespace.h>

class QKeyEvent;

namespace Kestrin {

/// NativeModifier bits of the toolkit's modifiers.
unsigned NativeModifiersOf(Qt::KeyboardModifiers modifiers);

/// A key press as the framework knows it.
NativeKeyEvent NativeKeyEventOf(const QKeyEvent& event);

} // namespace Kestrin
