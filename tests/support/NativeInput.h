#pragma once

#include "UI/Geometry.h"

#include "Platform/UI/NativeEvents.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

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

/// `key` is a NativeFunctionKey or the character that the key types without modifiers, `flags` are
/// kNativeShift and kNativeControl.
void Key(const Kestrin::View& anyView, char16_t key, unsigned flags = 0);
/// A character key that is held down.
void RepeatKey(const Kestrin::View& anyView, char16_t key);
/// An input method commits a text, UTF-8.
void TypeByInputMethod(const Kestrin::View& anyView, const std::string& text);

// The window that a view stands in.

/// Presses the window's close button.
void CloseWindow(const Kestrin::View& anyView);
void ResizeWindow(const Kestrin::View& anyView, int width, int height);
/// What a person reads, UTF-8.
std::string ToolTipOf(const Kestrin::View& view);

/// Opens a modal window, waits until it is seen and has it closed.
void RunModalWindow();

/// Performs the press action that a screen reader offers; false where the view offers none.
bool PressByScreenReader(const Kestrin::View& view);

/// What a screen reader reads of what has the focus of the window.
struct Spoken {
    std::string role; ///< "combo box" or "text field"
    std::string name;
    std::string value;
    bool focused = false;
};
Spoken SpokenOfFocus(const Kestrin::View& anyView);

/// A picture of a view and all within it, at a scale of device pixels per point.
class Picture {
public:
    explicit Picture(const Kestrin::View& view, double scale = 1);

    int Width() const { return fWidth; }
    int Height() const { return fHeight; }
    /// 0xRRGGBB at a device pixel.
    std::uint32_t At(int x, int y) const;

private:
    int fWidth;
    int fHeight;
    std::vector<std::uint32_t> fPixels;
};

} // namespace NativeInput
