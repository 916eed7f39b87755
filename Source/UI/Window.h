#pragma once

#include "Strings/UString.h"
#include "UI/Geometry.h"

#include <memory>

namespace Kestrin {

class View;
class WindowData;

/// A top-level window with one root view that fills its content area. It is created hidden and
/// centred, and no view has the focus.
class Window {
public:
    /// What happens to a window, told to whoever made it. The client outlives the window and may
    /// destroy it in any of these.
    class WindowEventClient {
    public:
        WindowEventClient() = default;
        WindowEventClient(const WindowEventClient&) = delete;
        WindowEventClient& operator=(const WindowEventClient&) = delete;

        /// The user closes the window. It goes out of sight after this; it is not destroyed.
        virtual void WindowClosedNotification(Window* window) = 0;
        /// A key that no view of the window took; see View::DoTextInput. The answer is for a client
        /// that is a view too, and so has one operation for both; nobody else asks for it.
        virtual bool DoTextInput(const UString& text, unsigned int modifiers,
                                 unsigned char keyCode);
        /// The window became or stopped being the one that takes the keys.
        virtual void WindowActivationChanged(Window* window, bool active) = 0;
        virtual void WindowVisiblilityChanged(Window* window, bool visible);
        /// The root view has its new size already. `frame` is the whole window, title bar included,
        /// y down from the top of its screen.
        virtual void WindowSizeChanged(Window* window, Rect frame);

    protected:
        ~WindowEventClient() = default;
    };

    /// Bits of `flags`. The close button is always there.
    enum Flags : unsigned int { kNoTitleBar = 1, kResizable = 2, kMiniaturizable = 4 };

    /// A window with a content area of that size in points. The caller owns it; DestroyWindow ends
    /// it.
    static Window* Create(WindowEventClient& client, const UString& title, unsigned int width,
                          unsigned int height, unsigned int flags);
    /// Null is ignored.
    static void DestroyWindow(Window* window);

    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// The text crosses as HandOver says, so that text beyond ASCII is cut.
    void SetWindowTitle(const UString& title);
    /// The content area on the screen, y down from its top.
    Rect GetRect() const;
    /// Owned by the window; views are placed in it.
    View* GetRootView();

    /// Brings the window to the front and makes it take the keys, showing it where it was hidden.
    void Activate();
    void ShowHide(bool show);

private:
    Window(WindowEventClient& client, const UString& title, unsigned int width, unsigned int height,
           unsigned int flags);

    std::unique_ptr<WindowData> fData;
};

} // namespace Kestrin
