#include "tests/support/NativeInput.h"

#include "UI/CurrentEvent.h"
#include "UI/View.h"

#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtView.h"
#include "Platform/UI/NativeView.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <map>

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

Qt::KeyboardModifiers ModifiersOf(unsigned flags) {
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, flags & Kestrin::kNativeShift);
    modifiers.setFlag(Qt::ControlModifier, flags & Kestrin::kNativeControl);
    return modifiers;
}

const std::map<char16_t, Qt::Key> kFunctionKeys = {
    {Kestrin::kNativeUpArrow, Qt::Key_Up},          {Kestrin::kNativeEnter, Qt::Key_Enter},
    {Kestrin::kNativeReturn, Qt::Key_Return},       {Kestrin::kNativeEscape, Qt::Key_Escape},
    {Kestrin::kNativeBackspace, Qt::Key_Backspace}, {Kestrin::kNativeTab, Qt::Key_Tab},
    {Kestrin::kNativeBackTab, Qt::Key_Backtab},
};

const std::map<QAccessible::Role, std::string> kRoleNames = {
    {QAccessible::ComboBox, "combo box"},
    {QAccessible::EditableText, "text field"},
};

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

void Key(const View& anyView, char16_t key, unsigned flags) {
    const auto named = kFunctionKeys.find(key);
    if (named == kFunctionKeys.end())
        QTest::keyClick(WindowOf(anyView), static_cast<char>(key), ModifiersOf(flags));
    else
        QTest::keyClick(WindowOf(anyView), named->second, ModifiersOf(flags));
    Settle();
}

void RepeatKey(const View& anyView, char16_t key) {
    QKeyEvent event(QEvent::KeyPress, QChar(key).toUpper().unicode(), {}, QString(QChar(key)),
                    true);
    QCoreApplication::sendEvent(WindowOf(anyView), &event);
    Settle();
}

void TypeByInputMethod(const View& anyView, const std::string& text) {
    QInputMethodEvent event;
    event.setCommitString(Kestrin::ToQString(text));
    QCoreApplication::sendEvent(WidgetOf(anyView).window()->focusWidget(), &event);
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

std::string ToolTipOf(const View& view) {
    return Kestrin::ToUtf8(QTextDocumentFragment::fromHtml(WidgetOf(view).toolTip()).toPlainText());
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

bool PressByScreenReader(const View& view) {
    QAccessibleActionInterface* actions =
        QAccessible::queryAccessibleInterface(&WidgetOf(view))->actionInterface();
    const QString press = QAccessibleActionInterface::pressAction();
    const bool isOffered = actions && actions->actionNames().contains(press);
    if (isOffered)
        actions->doAction(press);
    Settle();
    return isOffered;
}

Spoken SpokenOfFocus(const View& anyView) {
    QAccessibleInterface* spoken =
        QAccessible::queryAccessibleInterface(WidgetOf(anyView).window()->focusWidget());
    return {kRoleNames.at(spoken->role()), Kestrin::ToUtf8(spoken->text(QAccessible::Name)),
            Kestrin::ToUtf8(spoken->text(QAccessible::Value)), bool(spoken->state().focused)};
}

Picture::Picture(const View& view, double scale)
    : fWidth(static_cast<int>(WidgetOf(view).width() * scale))
    , fHeight(static_cast<int>(WidgetOf(view).height() * scale)) {
    QImage image(fWidth, fHeight, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    WidgetOf(view).render(&image, {}, {}, QWidget::DrawChildren);
    for (int y = 0; y < fHeight; ++y) {
        for (int x = 0; x < fWidth; ++x)
            fPixels.push_back(image.pixel(x, y) & 0xFFFFFF);
    }
}

std::uint32_t Picture::At(int x, int y) const {
    return fPixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(fWidth) +
                      static_cast<std::size_t>(x));
}

} // namespace NativeInput
