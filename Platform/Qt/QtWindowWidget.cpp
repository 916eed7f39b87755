#include "Platform/Qt/QtEvents.h"
#include "Platform/Qt/QtWidgets.h"

#include <QCloseEvent>
#include <QKeyEvent>

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
    , fContent(new QWidget(this))
    , fToldSize(contentSize)
    , fResizable(style & kNativeWindowResizable) {
    // When the program ends is the application's decision.
    setAttribute(Qt::WA_QuitOnClose, false);
    FitToContent(contentSize);
    // No view has the focus, and none is given it when the window is activated.
    setFocus();
}

QtWindow::~QtWindow() = default;

// Layout

int QtWindow::BarHeight() const {
    return fBar ? fBar->sizeHint().height() : 0;
}

void QtWindow::FitToContent(QSize contentSize) {
    const QSize size = contentSize + QSize(0, BarHeight());
    if (fResizable)
        resize(size);
    else
        setFixedSize(size);
    LayOut();
}

void QtWindow::LayOut() {
    const int bar = BarHeight();
    if (fBar)
        fBar->setGeometry(0, 0, width(), bar);
    fContent->setGeometry(0, bar, width(), height() - bar);
}

void QtWindow::SetMenuBar(QWidget* bar) {
    const QSize contentSize = fContent->size();
    if (fBar && fBar != bar)
        Retire(fBar);
    fBar = bar;
    if (bar) {
        bar->setParent(this);
        bar->show();
    }
    FitToContent(contentSize);
}

void QtWindow::resizeEvent(QResizeEvent*) {
    LayOut();
    if (fContent->size() == fToldSize)
        return;
    fToldSize = fContent->size();
    if (fClient)
        fClient->HandleResized();
}

void QtWindow::SetShown(bool shown) {
    fShown = shown;
    Rearrange();
}

void QtWindow::ArrangeNow() {
    setVisible(fShown && !IsRetired());
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

// Showing, hiding, closing

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

QtWindow* WindowOf(const QWidget& widget) {
    return dynamic_cast<QtWindow*>(widget.window());
}

} // namespace Kestrin
