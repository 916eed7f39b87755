#include "Platform/Qt/QtEvents.h"
#include "Platform/Qt/QtWidgets.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <utility>

namespace Kestrin {

namespace {

Qt::WindowFlags FlagsOf(unsigned style) {
    Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint;
    if (!(style & kNativeWindowTitled))
        return flags | Qt::FramelessWindowHint;
    flags |= Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    if (style & kNativeWindowClosable)
        flags |= Qt::WindowCloseButtonHint;
    if (style & kNativeWindowMiniaturizable)
        flags |= Qt::WindowMinimizeButtonHint;
    if (style & kNativeWindowResizable)
        flags |= Qt::WindowMaximizeButtonHint;
    return flags;
}

} // namespace

QtWindow::QtWindow(NativeWindowClient& client, unsigned style, QSize contentSize)
    : QtEventTarget(nullptr, FlagsOf(style))
    , fClient(&client)
    , fToldSize(contentSize) {
    // When the program ends is the application's decision.
    setAttribute(Qt::WA_QuitOnClose, false);
    if (style & kNativeWindowResizable)
        resize(contentSize);
    else
        setFixedSize(contentSize);
    // No view has the focus, and none is given it when the window is activated.
    setFocus();
}

// Focus and keys

void QtWindow::NoteFirstResponder() {
    auto* const now = dynamic_cast<QtView*>(focusWidget());
    if (now == fFirstResponder)
        return;
    const QPointer<QtWindow> guard = this;
    const QPointer<QtView> before = fFirstResponder;
    fFirstResponder = now;
    if (before)
        before->SetFirstResponder(false);
    // Being told, the view before may have moved the focus on.
    if (guard && now && fFirstResponder == now)
        now->SetFirstResponder(true);
}

void QtWindow::keyPressEvent(QKeyEvent* event) {
    if (fClient && !IsModifierKey(*event))
        fClient->HandleKeyDown(NativeKeyEventOf(*event));
}

bool QtWindow::HandleEvent(QEvent& event) {
    switch (event.type()) {
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        if (!focusWidget())
            setFocus();
        if (fClient)
            fClient->HandleKeyWindowChanged(event.type() == QEvent::WindowActivate);
        break;
    case QEvent::WindowBlocked:
        // A modal window has the pointer now.
        if (QtView* pressed = QtView::Pressed())
            pressed->LosePress();
        break;
    default:
        break;
    }
    return QtEventTarget::HandleEvent(event);
}

// Showing, hiding, closing, resizing

void QtWindow::SetShown(bool shown) {
    fShown = shown;
    Rearrange();
}

void QtWindow::ArrangeNow() {
    setVisible(fShown && !IsRetired());
}

void QtWindow::showEvent(QShowEvent* event) {
    if (!event->spontaneous() && fClient)
        fClient->HandleVisibilityChanged(true);
}

void QtWindow::hideEvent(QHideEvent* event) {
    if (!event->spontaneous() && fClient)
        fClient->HandleVisibilityChanged(false);
}

void QtWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    fShown = false;
    if (fClient)
        fClient->HandleClosing();
}

void QtWindow::resizeEvent(QResizeEvent*) {
    if (size() == std::exchange(fToldSize, size()))
        return;
    if (fClient)
        fClient->HandleResized();
}

QtWindow* WindowOf(const QWidget& widget) {
    return dynamic_cast<QtWindow*>(widget.window());
}

} // namespace Kestrin
