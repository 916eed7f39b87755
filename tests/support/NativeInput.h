#pragma once

#include "UI/Color.h"
#include "UI/Geometry.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

class QImage;

namespace Kestrin {
class View;
} // namespace Kestrin

/// A person at the keyboard and the mouse, for tests: events go the whole way from the window
/// system's door to the hooks of the views. Windows exist in memory alone. Everything due is
/// handled before a function returns.
namespace NativeInput {

/// Handles events until nothing is due.
void Settle();

/// Handles events until `condition` holds; false when it does not within 10 seconds.
bool WaitUntil(const std::function<bool()>& condition);

// The mouse, at points of a view that stands in a shown window.

void Press(const Kestrin::View& view, const Kestrin::Point& where);
void Release(const Kestrin::View& view, const Kestrin::Point& where);
/// With the button down this is a drag.
void Move(const Kestrin::View& view, const Kestrin::Point& where);
void Click(const Kestrin::View& view, const Kestrin::Point& where);

// The keyboard, to whatever has the focus of the window that a view stands in.

/// One key or up to four in a row, as a menu names shortcuts: "Return", "Ctrl+A, Backspace".
void Type(const Kestrin::View& anyView, const char* keys);
/// A digit's key that is held down.
void RepeatKey(const Kestrin::View& anyView, char digit);
/// An input method commits a text, UTF-8.
void TypeByInputMethod(const Kestrin::View& anyView, const std::string& text);

/// Drops a text, UTF-8, that was dragged from another program.
void DropText(const Kestrin::View& view, const Kestrin::Point& where, const std::string& text);

// The window that a view stands in.

std::string ShownTitle(const Kestrin::View& anyView);
/// Presses the window's close button.
void CloseWindow(const Kestrin::View& anyView);
void ResizeWindow(const Kestrin::View& anyView, int width, int height);

/// Opens a modal window, waits until it is seen and has it closed.
void RunModalWindow();

/// What a screen reader reads of what has the focus of the window: role, name, value and
/// whether it is focused.
std::string SpokenOfFocus(const Kestrin::View& anyView);

/// The desktop's colours of marked text and of the mark behind it.
std::pair<Kestrin::RGBAColor, Kestrin::RGBAColor> MarkedText();
/// Gives the desktop a look of white on black.
void UseHighContrast();

/// A picture of a view and all within it, at a scale of device pixels per point.
class Picture {
public:
    explicit Picture(const Kestrin::View& view, double scale = 1);

    /// 0xRRGGBB at a device pixel.
    std::uint32_t At(int x, int y) const;

private:
    std::shared_ptr<const QImage> fImage;
};

} // namespace NativeInput
