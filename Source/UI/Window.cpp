#include "UI/Window.h"

#include "UI/Internal/TextHandOver.h"
#include "UI/Internal/WindowData.h"

namespace Kestrin {

namespace {

Rect RectOf(const CGRect& rect) {
    return {static_cast<float>(rect.origin.x), static_cast<float>(rect.origin.y),
            static_cast<float>(rect.size.width), static_cast<float>(rect.size.height)};
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
    return RectOf(fData->Native().ContentFrame());
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

unsigned NativeStyleOf(unsigned int flags) {
    return ((flags & 5) + (flags & 2) * 4) ^ 3;
}

WindowData::WindowData(Window::WindowEventClient& client, Window& window, const Size& contentSize,
                       unsigned int flags)
    : fClient(client)
    , fWindow(window)
    , fNative(std::make_unique<NativeWindow>(*this, NativeStyleOf(flags),
                                             CGSize{contentSize.width, contentSize.height})) {
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
    const CGSize content = fNative->ContentFrame().size;
    fRootView.SetDimensions(static_cast<float>(content.width), static_cast<float>(content.height));
    fClient.WindowSizeChanged(&fWindow, RectOf(fNative->Frame()));
}

void WindowData::HandleClosing() {
    fClient.WindowClosedNotification(&fWindow);
}

void WindowData::HandleKeyDown(const NativeKeyEvent& event) {
    gLastNativeKeyCode = event.keyCode;
    TakeKey(UString(event.characters, UString::kUTF8), ModifiersOf(event.modifierFlags),
            KeyCodeOf(event));
}

bool WindowData::IsKeyWindow() const {
    return fNative && fNative->IsKey();
}

void WindowData::TakeKey(const UString& text, unsigned int modifiers, unsigned char keyCode) {
    fClient.DoTextInput(text, modifiers, keyCode);
}

} // namespace Kestrin
