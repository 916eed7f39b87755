#include "Platform/UI/NativeWindow.h"

#include "Platform/Qt/QtGeometry.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtWidgets.h"
#include "Platform/UI/NativeApplication.h"

#include <QGuiApplication>
#include <QScreen>

namespace Kestrin {

struct NativeWindow::Data {
    Data(NativeWindowClient& client, unsigned style, QSize contentSize)
        : widget(new QtWindow(client, style, contentSize)) {}

    QtWindow* widget;
};

namespace {

std::unique_ptr<NativeWindow::Data> MakeData(NativeWindowClient& client, unsigned style,
                                             const CGSize& size) {
    NativeApplication::Shared();
    const QSize contentSize(static_cast<int>(size.width), static_cast<int>(size.height));
    return std::make_unique<NativeWindow::Data>(client, style, contentSize);
}

CGRect OnScreen(const QWidget& window, const QRect& global) {
    const QPoint origin = QGuiApplication::platformName().startsWith("wayland")
                              ? QPoint()
                              : global.topLeft() - QPoint(0, window.screen()->geometry().top());
    return FromQt(QRectF(origin, global.size()));
}

} // namespace

NativeWindow::NativeWindow(NativeWindowClient& client, unsigned style, const CGSize& contentSize)
    : fData(MakeData(client, style, contentSize)) {}

NativeWindow::~NativeWindow() {
    QtWindow* const widget = fData->widget;
    widget->ForgetClient();
    widget->SetShown(false);
    const QObjectList children = widget->children();
    for (QObject* child : children) {
        if (auto* view = dynamic_cast<QtView*>(child))
            view->SetSuperview(nullptr);
    }
    widget->RetireSafely();
}

void NativeWindow::SetTitle(const std::string& title) {
    fData->widget->setWindowTitle(AsTitle(ToQString(title)));
}

void NativeWindow::SetContentView(NativeView& view) {
    static_cast<QtView*>(WidgetOf(view))->SetSuperview(fData->widget);
}

void NativeWindow::Center() {
    QtWindow* const widget = fData->widget;
    const QRect room = widget->screen()->availableGeometry();
    widget->move(room.center() - QPoint(widget->width() / 2, widget->height() / 2));
}

void NativeWindow::MakeKeyAndOrderFront() {
    QtWindow* const widget = fData->widget;
    const QtEventTarget::Running running;
    if (widget->isMinimized())
        widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
    widget->SetShown(true);
    if (!widget->isVisible())
        return;
    widget->raise();
    widget->activateWindow();
}

void NativeWindow::OrderOut() {
    fData->widget->SetShown(false);
}

bool NativeWindow::IsKey() const {
    return fData->widget->isActiveWindow();
}

CGRect NativeWindow::ContentFrame() const {
    return OnScreen(*fData->widget, fData->widget->geometry());
}

CGRect NativeWindow::Frame() const {
    return OnScreen(*fData->widget, fData->widget->frameGeometry());
}

QWidget* WidgetOf(const NativeWindow& window) {
    return window.GetData().widget;
}

} // namespace Kestrin
