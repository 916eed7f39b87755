#include "Platform/Qt/QtEvents.h"
#include "Platform/Qt/QtGeometry.h"
#include "Platform/Qt/QtGraphics.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtWidgets.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace Kestrin {

namespace {

QPointer<QtView> sPressed;

bool IsButtonDown() {
    return QGuiApplication::mouseButtons() & Qt::LeftButton;
}

/// Widgets stand at numbers of moderate size, whatever a frame says.
int WholePoint(double coordinate) {
    constexpr double kFar = 1 << 23;
    return coordinate > -kFar ? static_cast<int>(std::min(coordinate, kFar)) : -(1 << 23);
}

bool IsTab(const QKeyEvent& event) {
    return event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab;
}

} // namespace

QtView::QtView(NativeViewClient& client)
    : QtEventTarget(nullptr)
    , fClient(&client) {
    InstallAccessibility();
    setMouseTracking(true);
}

// Place

void QtView::SetSuperview(QWidget* superview) {
    fSuperview = superview;
    Rearrange();
}

void QtView::SetHidden(bool hidden) {
    fHidden = hidden;
    Rearrange();
}

void QtView::ArrangeNow() {
    const QPointer<QtWindow> window = WindowOf(*this);
    const bool moves = fSuperview != parentWidget();
    // Left to the toolkit, the focus would go on to the next control or stay out of sight.
    if (window && (moves || fHidden) &&
        (window->focusWidget() == this || isAncestorOf(window->focusWidget())))
        window->setFocus();
    if (moves) {
        setParent(fSuperview);
        PlaceWidget();
    }
    setVisible(fSuperview && !fHidden);
    if (window)
        window->NoteFirstResponder();
}

void QtView::SetFrame(const CGRect& frame) {
    fFrame = frame;
    PlaceWidget();
}

/// The widget covers every point that the frame touches; what lies between the two is the fraction.
void QtView::PlaceWidget() {
    const auto* superview = dynamic_cast<const QtView*>(parentWidget());
    const QPointF base = superview ? superview->fFraction : QPointF();
    const QPointF origin = base + ToQt(fFrame.origin);
    const QPointF corner = origin + QPointF(fFrame.size.width, fFrame.size.height);
    const QPoint topLeft(WholePoint(std::floor(origin.x())), WholePoint(std::floor(origin.y())));
    const QPoint bottomRight(WholePoint(std::ceil(corner.x())), WholePoint(std::ceil(corner.y())));
    const bool shows = fFrame.size.width > 0 && fFrame.size.height > 0;
    setGeometry(
        QRect(topLeft, shows ? QSize(bottomRight.x() - topLeft.x(), bottomRight.y() - topLeft.y())
                             : QSize(0, 0)));
    const QPointF fraction = origin - topLeft;
    if (fraction == fFraction)
        return;
    fFraction = fraction;
    for (QObject* child : children()) {
        if (auto* view = dynamic_cast<QtView*>(child))
            view->PlaceWidget();
    }
}

// Drawing

void QtView::paintEvent(QPaintEvent*) {
    if (!fClient)
        return;
    const Drawing drawing;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(fFraction);
    painter.setClipRect(QRectF(0, 0, fFrame.size.width, fFrame.size.height), Qt::IntersectClip);
    CGContext context = ContextOver(painter);
    fClient->HandleDraw(context);
}

// Pointer

NativeMouseEvent QtView::MouseEventAt(QPointF position, Qt::KeyboardModifiers modifiers) const {
    NativeMouseEvent event;
    event.where = FromQt(position - fFraction);
    event.modifierFlags = NativeModifiersOf(modifiers);
    return event;
}

void QtView::mousePressEvent(QMouseEvent* event) {
    Press(*event, 1);
}

void QtView::mouseDoubleClickEvent(QMouseEvent* event) {
    Press(*event, 2);
}

void QtView::Press(const QMouseEvent& event, int clickCount) {
    if (!fClient || event.button() != Qt::LeftButton)
        return;
    NativeMouseEvent press = MouseEventAt(event.position(), event.modifiers());
    press.clickCount = clickCount;
    fPressed = true;
    sPressed = this;
    fClient->HandleMouseDown(press);
    // A menu or another window took the release while the press was handled.
    if (!IsButtonDown())
        LosePress();
}

void QtView::LosePress() {
    if (std::exchange(fPressed, false) && fClient)
        fClient->HandlePressLost();
}

QtView* QtView::Pressed() {
    return sPressed && sPressed->fPressed ? sPressed.data() : nullptr;
}

void QtView::mouseMoveEvent(QMouseEvent* event) {
    const NativeMouseEvent move = MouseEventAt(event->position(), event->modifiers());
    const bool held = event->buttons() & Qt::LeftButton;
    if (!held)
        LosePress();
    if (!fClient)
        return;
    if (held && fPressed)
        fClient->HandleMouseDragged(move);
    else
        fClient->HandleMouseMoved(move);
}

void QtView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && std::exchange(fPressed, false) && fClient)
        fClient->HandleMouseUp(MouseEventAt(event->position(), event->modifiers()));
}

void QtView::enterEvent(QEnterEvent* event) {
    if (fClient)
        fClient->HandleMouseEntered(MouseEventAt(event->position(), event->modifiers()));
}

void QtView::leaveEvent(QEvent*) {
    if (fClient)
        fClient->HandleMouseExited(MouseEventAt(mapFromGlobal(QPointF(QCursor::pos())),
                                                QGuiApplication::keyboardModifiers()));
}

void QtView::wheelEvent(QWheelEvent* event) {
    if (!fClient)
        return;
    constexpr double kNotch = QWheelEvent::DefaultDeltasPerStep;
    NativeMouseEvent wheel = MouseEventAt(event->position(), event->modifiers());
    wheel.deltaX = event->angleDelta().x() / kNotch;
    wheel.deltaY = event->angleDelta().y() / kNotch;
    fClient->HandleScrollWheel(wheel);
}

void QtView::hideEvent(QHideEvent*) {
    LosePress();
}

// Keys and focus

bool QtView::HandleEvent(QEvent& event) {
    if (event.type() == QEvent::KeyPress)
        return HandleKey(static_cast<QKeyEvent&>(event));
    return QtEventTarget::HandleEvent(event);
}

/// Keys that a widget inside the view ignored pass through to the window.
bool QtView::HandleKey(QKeyEvent& event) {
    const bool isTarget = fClient && window()->focusWidget() == this;
    event.setAccepted(isTarget);
    if (isTarget && !IsModifierKey(event) && !fClient->HandleKeyDown(NativeKeyEventOf(event)) &&
        IsTab(event))
        focusNextPrevChild(event.key() == Qt::Key_Tab && !(event.modifiers() & Qt::ShiftModifier));
    return isTarget;
}

void QtView::focusInEvent(QFocusEvent*) {
    if (QtWindow* window = WindowOf(*this))
        window->NoteFirstResponder();
}

void QtView::focusOutEvent(QFocusEvent* event) {
    focusInEvent(event);
}

void QtView::SetEnabled(bool enabled) {
    const Running running;
    fEnabled = enabled;
    UpdateFocusPolicy();
    const QPointer<QtWindow> window = WindowOf(*this);
    const QWidget* const focus = window ? window->focusWidget() : nullptr;
    if (!enabled && focus && (focus == this || focus == focusProxy()))
        window->setFocus();
    if (QWidget* const field = focusProxy())
        field->setEnabled(enabled);
    if (window)
        window->NoteFirstResponder();
}

void QtView::SetTabStop(bool stop) {
    fTabStop = stop;
    UpdateFocusPolicy();
}

/// What a click means to the focus is the framework's decision, save for a field's own clicks.
void QtView::UpdateFocusPolicy() {
    const bool stops = fTabStop && fEnabled;
    if (QWidget* const field = focusProxy())
        field->setFocusPolicy(stops ? Qt::StrongFocus : Qt::ClickFocus);
    else
        setFocusPolicy(stops ? Qt::TabFocus : Qt::NoFocus);
}

void QtView::SetFirstResponder(bool first) {
    if (std::exchange(fIsFirstResponder, first) != first && fClient)
        fClient->HandleFirstResponderChanged(first);
}

// Accessibility

void QtView::SetAccessibility(AccessibleDescription description) {
    fAccessibility = std::move(description);
    // A text field inside the view is what a person meets in its place.
    QWidget* const met = focusProxy() ? focusProxy() : this;
    met->setAccessibleName(ToQString(fAccessibility.name));
}

void QtView::Press(const std::function<void(NativeViewClient&)>& handle) {
    if (!fClient)
        return;
    fPressed = true;
    sPressed = this;
    handle(*fClient);
    fPressed = false;
}

} // namespace Kestrin
