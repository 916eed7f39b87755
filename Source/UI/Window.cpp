#include "UI/Window.h"

#include "UI/Internal/KeyInput.h"
#include "UI/Internal/NativeGeometry.h"
#include "UI/Internal/TextHandOver.h"
#include "UI/Internal/WindowData.h"

namespace Kestrin {

namespace {

unsigned NativeStyleOf(unsigned int flags) {
    unsigned style = kNativeWindowClosable;
    if (!(flags & Window::kNoTitleBar))
        style |= kNativeWindowTitled;
    if (flags & Window::kResizable)
        style |= kNativeWindowResizable;
    if (flags & Window::kMiniaturizable)
        style |= kNativeWindowMiniaturizable;
    return style;
}

} // namespace

bool Window::WindowEventClient::DoTextInput(const UString&, unsigned int, unsigned char) {
    return false;
}

void Window::WindowEventClient::WindowVisiblilityChanged(Window*, bool) {}

void Window::WindowEventClient::WindowSizeChanged(Window*, Rect) {}

// Window

Window* Window::Create(WindowEventClient& client, const UString& title, unsigned int width,
                       unsigned int height, unsigned int flags) {
    return new Window(client, title, width, height, flags);
}

void Window::DestroyWindow(Window* window) {
    delete window;
}

Window::Window(WindowEventClient& client, const UString& title, unsigned int width,
               unsigned int height, unsigned int flags)
    : fData(std::make_unique<WindowData>(
          client, *this, Size{static_cast<float>(width), static_cast<float>(height)}, flags)) {
    SetWindowTitle(title);
    fData->Native().Center();
}

Window::~Window() = default;

void Window::SetWindowTitle(const UString& title) {
    fData->Native().SetTitle(HandOver(title));
}

Rect Window::GetRect() const {
    return FromNative(fData->Native().ContentFrame());
}

View* Window::GetRootView() {
    return fData ? &fData->RootView() : nullptr;
}

void Window::Activate() {
    fData->Native().MakeKeyAndOrderFront();
}

void Window::ShowHide(bool show) {
    if (show)
        fData->Native().MakeKeyAndOrderFront();
    else
        fData->Native().OrderOut();
}

// WindowData

WindowData::WindowData(Window::WindowEventClient& client, Window& window, const Size& contentSize,
                       unsigned int flags)
    : fClient(client)
    , fWindow(window)
    , fNative(std::make_unique<NativeWindow>(*this, NativeStyleOf(flags), ToNative(contentSize))) {
    BridgeOf(fRootView).SetWindow(this);
    fNative->SetContentView(BridgeOf(fRootView).Native());
    fRootView.MoveTo(0, 0);
    fRootView.SetDimensions(contentSize);
    fRootView.ShowHide(true);
}

WindowData::~WindowData() {
    // The views that stay behind see no window while the native one goes.
    BridgeOf(fRootView).SetWindow(nullptr);
    fNative.reset();
}

void WindowData::HandleKeyWindowChanged(bool isKey) {
    fClient.WindowActivationChanged(&fWindow, isKey);
}

void WindowData::HandleVisibilityChanged(bool visible) {
    fClient.WindowVisiblilityChanged(&fWindow, visible);
}

void WindowData::HandleResized() {
    const Rect content = FromNative(fNative->ContentFrame());
    fRootView.SetDimensions(content.width, content.height);
    fClient.WindowSizeChanged(&fWindow, FromNative(fNative->Frame()));
}

void WindowData::HandleClosing() {
    fClient.WindowClosedNotification(&fWindow);
}

void WindowData::HandleKeyDown(const NativeKeyEvent& event) {
    TakeKey(TakeKeyInput(event));
}

bool WindowData::IsKeyWindow() const {
    return fNative && fNative->IsKey();
}

void WindowData::TakeKey(const KeyInput& key) {
    fClient.DoTextInput(key.text, key.modifiers, key.keyCode);
}

} // namespace Kestrin
