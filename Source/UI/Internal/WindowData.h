#pragma once

#include "UI/Internal/ViewBridge.h"
#include "UI/View.h"
#include "UI/Window.h"

#include "Platform/UI/NativeWindow.h"

#include <memory>

namespace Kestrin {

/// What a window is made of. It turns what happens to the native window into calls of the client.
class WindowData final : public NativeWindowClient, public WindowOfViews {
public:
    WindowData(Window::WindowEventClient& client, Window& window, const Size& contentSize,
               unsigned int flags);
    ~WindowData();

    NativeWindow& Native() { return *fNative; }
    View& RootView() { return fRootView; }

private:
    // What the native window reports
    void HandleKeyWindowChanged(bool isKey) override;
    void HandleVisibilityChanged(bool visible) override;
    void HandleResized() override;
    void HandleClosing() override;
    void HandleKeyDown(const NativeKeyEvent& event) override;

    // What the views ask
    bool IsKeyWindow() const override;
    void TakeKey(const KeyInput& key) override;

    Window::WindowEventClient& fClient;
    Window& fWindow;
    std::unique_ptr<NativeWindow> fNative;
    View fRootView;
};

} // namespace Kestrin
