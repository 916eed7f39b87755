#include "tests/support/NativeInput.h"

#include "UI/Internal/CurrentEvent.h"
#include "UI/View.h"

#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtView.h"
#include "Platform/UI/NativeApplication.h"
#include "Platform/UI/NativeView.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QImage>
#include <QMetaEnum>
#include <QMimeData>
#include <QPalette>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace NativeInput {

namespace {

using Kestrin::Point;
using Kestrin::View;

QWidget& WidgetOf(const View& view) {
    return *Kestrin::WidgetOf(Kestrin::NativeViewOf(view));
}

QWindow* WindowOf(const View& view) {
    return WidgetOf(view).window()->windowHandle();
}

QPoint InWindow(const View& view, const Point& where) {
    QWidget& widget = WidgetOf(view);
    return widget.mapTo(widget.window(), QPointF(where.x, where.y).toPoint());
}

} // namespace

void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool WaitUntil(const std::function<bool()>& condition) {
    const bool held = QTest::qWaitFor(condition, 10000);
    Settle();
    return held;
}

void Press(const View& view, const Point& where) {
    QTest::mousePress(WindowOf(view), Qt::LeftButton, {}, InWindow(view, where));
    Settle();
}

void Release(const View& view, const Point& where) {
    QTest::mouseRelease(WindowOf(view), Qt::LeftButton, {}, InWindow(view, where));
    Settle();
}

void Move(const View& view, const Point& where) {
    QTest::mouseMove(WindowOf(view), InWindow(view, where));
    Settle();
}

void Click(const View& view, const Point& where) {
    Press(view, where);
    Release(view, where);
}

void Type(const View& anyView, const char* keys) {
    QTest::keySequence(WindowOf(anyView), QKeySequence(keys));
    Settle();
}

void RepeatKey(const View& anyView, char digit) {
    QKeyEvent event(QEvent::KeyPress, digit, {}, QString(digit), true);
    QCoreApplication::sendEvent(WindowOf(anyView), &event);
    Settle();
}

void TypeByInputMethod(const View& anyView, const std::string& text) {
    QInputMethodEvent event;
    event.setCommitString(Kestrin::ToQString(text));
    QCoreApplication::sendEvent(WidgetOf(anyView).window()->focusWidget(), &event);
    Settle();
}

std::string ShownTitle(const View& anyView) {
    return Kestrin::ToUtf8(WindowOf(anyView)->title());
}

void DropText(const View& view, const Point& where, const std::string& text) {
    QMimeData data;
    data.setText(Kestrin::ToQString(text));
    QWidget* const target = WidgetOf(view).childAt(QPointF(where.x, where.y).toPoint());
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &enter);
    QDropEvent drop(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &drop);
    Settle();
}

void CloseWindow(const View& anyView) {
    WidgetOf(anyView).window()->close();
    Settle();
}

void ResizeWindow(const View& anyView, int width, int height) {
    WidgetOf(anyView).window()->resize(width, height);
    Settle();
}

void RunModalWindow() {
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&dialog] {
        // A window that goes before the window manager has given it the focus may take it along.
        static_cast<void>(QTest::qWaitForWindowActive(&dialog));
        dialog.accept();
    });
    dialog.exec();
}

std::string SpokenOfFocus(const View& anyView) {
    QAccessibleInterface* spoken =
        QAccessible::queryAccessibleInterface(WidgetOf(anyView).window()->focusWidget());
    const QString role = QMetaEnum::fromType<QAccessible::Role>().valueToKey(spoken->role());
    const QStringList words{role, spoken->text(QAccessible::Name), spoken->text(QAccessible::Value),
                            spoken->state().focused ? "focused" : "not focused"};
    return Kestrin::ToUtf8(words.join('|'));
}

std::pair<Kestrin::RGBAColor, Kestrin::RGBAColor> MarkedText() {
    Kestrin::NativeApplication::Shared();
    const auto color = [](QPalette::ColorRole role) {
        const QColor of = QApplication::palette().color(role);
        return Kestrin::RGBAColor{of.redF(), of.greenF(), of.blueF(), 1};
    };
    return {color(QPalette::HighlightedText), color(QPalette::Highlight)};
}

void UseHighContrast() {
    Kestrin::NativeApplication::Shared();
    QPalette palette(Qt::white, Qt::black, Qt::white, Qt::black, Qt::gray, Qt::white, Qt::black);
    palette.setColor(QPalette::Highlight, Qt::yellow);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    QApplication::setPalette(palette);
    Settle();
}

Picture::Picture(const View& view, double scale) {
    QWidget& widget = WidgetOf(view);
    QImage image(widget.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    fImage = std::make_shared<QImage>(image);
}

std::uint32_t Picture::At(int x, int y) const {
    return fImage->pixel(x, y) & 0xFFFFFF;
}

} // namespace NativeInput
