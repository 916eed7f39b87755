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

} // namespace Kestrin
