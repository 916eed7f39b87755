#pragma once

#include "Platform/UI/CGGeometry.h"
#include "Platform/UI/NativeEvents.h"

#include <memory>
#include <string>

namespace Kestrin {

class NativeView;

/// Bits of a window's style mask.
enum NativeWindowStyle : unsigned {
    kNativeWindowTitled = 1,
    kNativeWindowClosable = 2,
    kNativeWindowMiniaturizable = 4,
    kNativeWindowResizable = 8,
};

/// What happens to a native window, told to the framework. The client may destroy the window in any
/// of these; the native side touches neither afterwards.
class NativeWindowClient {
public:
    /// The window became or stopped being the one that takes the keys.
    virtual void HandleKeyWindowChanged(bool isKey) = 0;

    /// The window was ordered in or out (not: miniaturised).
    virtual void HandleVisibilityChanged(bool visible) = 0;

    /// The content area has a new size.
    virtual void HandleResized() = 0;

    /// The user closes the window; it goes away after this returns.
    virtual void HandleClosing() = 0;

    /// A key went down while no view of the window was first responder. A Tab moves the focus
    /// first.
    virtual void HandleKeyDown(const NativeKeyEvent&) = 0;

protected:
    ~NativeWindowClient() = default;
};

/// A top-level window, created hidden, without a first responder.
class NativeWindow {
public:
    struct Data;

    /// `style` is made of NativeWindowStyle bits. The client outlives the window.
    NativeWindow(NativeWindowClient& client, unsigned style, const CGSize& contentSize);

    /// Orders the window out. The content view is set free, not destroyed.
    ~NativeWindow();
    NativeWindow(const NativeWindow&) = delete;
    NativeWindow& operator=(const NativeWindow&) = delete;

    /// Plain UTF-8 text.
    void SetTitle(const std::string& title);

    /// The view that covers the content area; its frame is the caller's business.
    void SetContentView(NativeView& view);

    /// To the middle of the screen, where the display server lets a window place itself.
    void Center();

    /// Shows the window in front of others and makes it key.
    void MakeKeyAndOrderFront();
    void OrderOut();
    bool IsKey() const;

    // Frames in screen coordinates, y down from the top of the window's screen, without and with
    // the title bar. Where the display server tells no positions, the origin is (0, 0).

    CGRect ContentFrame() const;
    CGRect Frame() const;

    /// For the platform's own files.
    Data& GetData() const { return *fData; }

private:
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
