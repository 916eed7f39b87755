#include "tests/support/Desktop.h"

#include "Platform/Qt/QtText.h"
#include "Platform/UI/NativeApplication.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace Desktop {

using Kestrin::ToUtf8;

namespace {

constexpr int kPollInterval = 5;        // milliseconds
constexpr unsigned int kStepLimit = 10; // seconds

Rect From(const QRect& r) {
    return {float(r.x()), float(r.y()), float(r.width()), float(r.height())};
}

bool IsOnScreen(const QWidget* widget) {
    return widget && widget->windowHandle() && widget->windowHandle()->isExposed();
}

/// What a person reads on it.
std::string TextOf(const QAccessibleInterface* shown) {
    return ToUtf8(shown->text(QAccessible::Name));
}

QAccessibleInterface* Part(const QWidget& window, const char* name) {
    return QAccessible::queryAccessibleInterface(window.findChild<QWidget*>(name));
}

bool HasRoom(const QLabel& label) {
    const QRect room = label.contentsRect();
    const int flags = label.wordWrap() ? Qt::TextWordWrap : 0;
    return room.contains(label.fontMetrics().boundingRect(room, flags, label.text()));
}

} // namespace

std::optional<Menu> OpenMenu() {
    auto* const widget = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!IsOnScreen(widget))
        return std::nullopt;
    Menu menu;
    menu.place = From(widget->geometry());
    menu.highlighted = static_cast<int>(widget->actions().indexOf(widget->activeAction()));
    QAccessibleInterface* const items = QAccessible::queryAccessibleInterface(widget);
    for (int i = 0; i < items->childCount(); ++i) {
        const QAccessibleInterface* item = items->child(i);
        menu.items.push_back({TextOf(item), bool(item->state().checked), !item->state().disabled,
                              From(item->rect())});
    }
    return menu;
}

std::optional<Alert> OpenAlert() {
    const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!IsOnScreen(box) || !box->isActiveWindow())
        return std::nullopt;
    Alert alert;
    alert.headline = TextOf(Part(*box, "qt_msgbox_label"));
    alert.isHeadlineWhole = HasRoom(*box->findChild<QLabel*>("qt_msgbox_label"));
    alert.text = TextOf(Part(*box, "qt_msgbox_informativelabel"));
    alert.isCritical = box->icon() == QMessageBox::Critical;
    alert.place = From(box->geometry());
    QList<QPushButton*> buttons = box->findChildren<QPushButton*>();
    std::sort(buttons.begin(), buttons.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    for (QPushButton* button : buttons) {
        alert.buttons.push_back(TextOf(QAccessible::queryAccessibleInterface(button)));
        if (button->hasFocus() && button->isDefault())
            alert.focused = alert.buttons.back();
    }
    return alert;
}

Rect Screen() {
    return From(QGuiApplication::primaryScreen()->availableGeometry());
}

void Input(const std::string& arguments) {
    const std::string command = "xdotool " + arguments;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

void Type(const std::string& keys) {
    Input("key " + keys);
}

void PointAt(const Rect& place) {
    Input("mousemove " + std::to_string(std::lround(place.x + place.width / 2)) + " " +
          std::to_string(std::lround(place.y + place.height / 2)));
}

Script::Script() {
    Kestrin::NativeApplication::Shared();
    auto timer = std::make_shared<QTimer>();
    QObject::connect(timer.get(), &QTimer::timeout, [this] { Poll(); });
    timer->start(kPollInterval);
    fTimer = timer;
    alarm(kStepLimit);
}

Script::~Script() {
    alarm(0);
    EXPECT_TRUE(IsDone()) << fSteps.size() << " steps of the script were not taken.";
}

void Script::Poll() {
    if (fSteps.empty() || fIsActing || !fSteps.front().first())
        return;
    const auto action = fSteps.front().second;
    fSteps.pop_front();
    fIsActing = true;
    action();
    fIsActing = false;
    alarm(kStepLimit);
}

void Script::When(std::function<bool()> condition, std::function<void()> action) {
    fSteps.emplace_back(std::move(condition), std::move(action));
}

void Script::WhenMenuIsOpen(std::function<void(const Menu&)> action) {
    When([] { return OpenMenu().has_value(); }, [action] { action(*OpenMenu()); });
}

void Script::WhenHighlighted(int item, std::function<void()> action) {
    When([item] { return OpenMenu() && OpenMenu()->highlighted == item; }, std::move(action));
}

void Script::WhenAlertIsOpen(std::function<void(const Alert&)> action) {
    When([] { return OpenAlert().has_value(); }, [action] { action(*OpenAlert()); });
}

void Script::Play() {
    while (!IsDone())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace Desktop
