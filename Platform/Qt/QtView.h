#pragma once

class QWidget;

namespace Kestrin {

class NativeView;
class NativeWindow;

/// The widget of a native view, never null; the native view keeps it. A widget put inside it (a
/// text field) must leave before the native view goes.
QWidget* WidgetOf(const NativeView& view);

/// The top-level widget of a native window, never null; the native window keeps it.
QWidget* WidgetOf(const NativeWindow& window);

/// Takes a widget out of sight and out of its parent now and deletes it at the next turn of the
/// event loop, so that this is safe inside the widget's own events.
void Retire(QWidget* widget);

} // namespace Kestrin
