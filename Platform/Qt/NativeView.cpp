#include "Platform/UI/NativeView.h"

#include "Platform/Qt/QtFieldWidget.h"
#include "Platform/Qt/QtGeometry.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtWidgets.h"
#include "Platform/UI/NativeApplication.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTextDocument>
#include <QWindow>

namespace Kestrin {

struct NativeView::Data {
    explicit Data(NativeViewClient& client)
        : widget(new QtView(client)) {}

    QtView* widget;
};

namespace {

/// No widget exists before the application does.
std::unique_ptr<NativeView::Data> MakeData(NativeViewClient& client) {
    NativeApplication::Shared();
    return std::make_unique<NativeView::Data>(client);
}

bool PositionsAreGlobal() {
    return !QGuiApplication::platformName().startsWith("wayland");
}

/// Where a view's own coordinates start, in screen coordinates.
QPointF ScreenOrigin(const QtView& widget) {
    if (!PositionsAreGlobal())
        return widget.mapTo(widget.window(), widget.Fraction());
    return widget.mapToGlobal(widget.Fraction()) - QPointF(0, widget.screen()->geometry().top());
}

QString PlainToolTip(const std::string& text) {
    const QString plain = ToQString(text);
    return Qt::mightBeRichText(plain) ? "<span>" + plain.toHtmlEscaped() + "</span>" : plain;
}

} // namespace

NativeView::NativeView(NativeViewClient& client)
    : fData(MakeData(client)) {}

NativeView::~NativeView() {
    QtView* const widget = fData->widget;
    widget->ForgetClient();
    const QObjectList children = widget->children();
    for (QObject* child : children) {
        if (auto* view = dynamic_cast<QtView*>(child))
            view->SetSuperview(nullptr);
    }
    widget->SetSuperview(nullptr);
    widget->RetireSafely();
}

// Tree

void NativeView::AddSubview(NativeView& child) {
    child.fData->widget->SetSuperview(fData->widget);
}

void NativeView::RemoveFromSuperview() {
    fData->widget->SetSuperview(nullptr);
}

// Appearance

void NativeView::SetFrame(const CGRect& frame) {
    fData->widget->SetFrame(frame);
}

void NativeView::SetHidden(bool hidden) {
    fData->widget->SetHidden(hidden);
}

void NativeView::SetOpaque(bool opaque) {
    // A widget that starts between two points has edges that the view does not cover.
    fData->widget->setAttribute(Qt::WA_OpaquePaintEvent,
                                opaque && fData->widget->Fraction().isNull());
}

void NativeView::SetToolTip(const std::string& text) {
    fData->widget->setToolTip(PlainToolTip(text));
}

void NativeView::SetNeedsDisplay() {
    fData->widget->update();
}

void NativeView::Display() {
    fData->widget->repaint();
}

// Events and focus

void NativeView::SetEnabled(bool enabled) {
    fData->widget->SetEnabled(enabled);
}

void NativeView::SetTabStop(bool stop) {
    fData->widget->SetTabStop(stop);
}

void NativeView::MakeFirstResponder() {
    QtWindow* const window = WindowOf(*fData->widget);
    if (!window)
        return;
    const QtEventTarget::Running running;
    QWidget* const before = window->focusWidget();
    fData->widget->setFocus(Qt::MouseFocusReason);
    // In a window that is not active, the field that had the focus hears nothing of its loss.
    auto* const left = dynamic_cast<QtFieldWidget*>(before);
    if (left && left != window->focusWidget())
        left->EndEditing();
    window->NoteFirstResponder();
}

bool NativeView::IsFirstResponder() const {
    const QtWindow* const window = WindowOf(*fData->widget);
    const QWidget* const focus = window ? window->focusWidget() : nullptr;
    return focus && (focus == fData->widget || focus == fData->widget->focusProxy());
}

void NativeView::SelectNextKeyView() {
    const QtEventTarget::Running running;
    if (QtWindow* window = WindowOf(*fData->widget))
        window->FocusNextTabStop();
}

void NativeView::StartWindowMove() {
    if (QWindow* handle = fData->widget->window()->windowHandle())
        handle->startSystemMove();
}

// Coordinates

CGPoint NativeView::ToScreen(const CGPoint& point) const {
    return FromQt(ScreenOrigin(*fData->widget) + ToQt(point));
}

CGPoint NativeView::FromScreen(const CGPoint& point) const {
    return FromQt(ToQt(point) - ScreenOrigin(*fData->widget));
}

// Accessibility

void NativeView::SetAccessibility(AccessibleDescription description) {
    fData->widget->SetAccessibility(std::move(description));
}

void NativeView::TellAccessibleValueChanged() {
    TellAccessibleValueOf(*fData->widget);
}

QWidget* WidgetOf(const NativeView& view) {
    return view.GetData().widget;
}

// Cursor

void NativeCursor::Hide() {
    QGuiApplication::setOverrideCursor(Qt::BlankCursor);
}

void NativeCursor::Unhide() {
    QGuiApplication::restoreOverrideCursor();
}

CGPoint NativeCursor::Position() {
    return FromQt(QPointF(QCursor::pos()));
}

void NativeCursor::MoveTo(const CGPoint& position) {
    QCursor::setPos(static_cast<int>(position.x), static_cast<int>(position.y));
}

} // namespace Kestrin
