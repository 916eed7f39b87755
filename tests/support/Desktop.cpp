#include "tests/support/Desktop.h"

#include "Platform/Qt/QtText.h"
#include "Platform/UI/NativeApplication.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cstdlib>

namespace Desktop {

using Kestrin::ToUtf8;

namespace {

constexpr int kPollInterval = 5;        // milliseconds
constexpr unsigned int kStepLimit = 10; // seconds

Rectangle From(const QRect& r) {
    return {r.x(), r.y(), r.width(), r.height()};
}

bool IsOnScreen(const QWidget* widget) {
    return widget != nullptr && widget->isVisible() && widget->windowHandle() != nullptr &&
           widget->windowHandle()->isExposed();
}

std::string Shown(QString text) {
    return ToUtf8(text.replace(QLatin1String("&&"), QLatin1String("&")));
}

/// What a label shows of its text.
std::string TextOf(const QWidget& window, const char* labelName) {
    const auto* label = window.findChild<QLabel*>(QLatin1String(labelName));
    const bool isRich = label->textFormat() == Qt::RichText ||
                        (label->textFormat() == Qt::AutoText && Qt::mightBeRichText(label->text()));
    return ToUtf8(isRich ? QTextDocumentFragment::fromHtml(label->text()).toPlainText()
                         : label->text());
}

QList<QPushButton*> ButtonsFromLeft(const QMessageBox& box) {
    QList<QPushButton*> buttons = box.findChildren<QPushButton*>();
    std::sort(buttons.begin(), buttons.end(),
              [](const QWidget* a, const QWidget* b) { return a->x() < b->x(); });
    return buttons;
}

} // namespace

std::optional<Menu> OpenMenu() {
    const auto* widget = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!IsOnScreen(widget))
        return std::nullopt;
    Menu menu;
    menu.place = From(widget->geometry());
    menu.highlighted = static_cast<int>(widget->actions().indexOf(widget->activeAction()));
    for (QAction* action : widget->actions()) {
        const QRect place = widget->actionGeometry(action).translated(widget->geometry().topLeft());
        menu.items.push_back(
            {Shown(action->text()), action->isChecked(), action->isEnabled(), From(place)});
    }
    return menu;
}

std::optional<Alert> OpenAlert() {
    const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!IsOnScreen(box) || !box->isActiveWindow())
        return std::nullopt;
    Alert alert;
    alert.headline = TextOf(*box, "qt_msgbox_label");
    alert.text = TextOf(*box, "qt_msgbox_informativelabel");
    alert.isCritical = box->icon() == QMessageBox::Critical;
    alert.place = From(box->geometry());
    for (const QPushButton* button : ButtonsFromLeft(*box)) {
        alert.buttons.push_back(Shown(button->text()));
        alert.buttonPlaces.push_back(From({button->mapToGlobal(QPoint()), button->size()}));
        if (button->hasFocus() && button->isDefault())
            alert.focused = alert.buttons.back();
    }
    return alert;
}

Rectangle Screen() {
    return From(QGuiApplication::primaryScreen()->availableGeometry());
}

void Input(const std::string& arguments) {
    const std::string command = "xdotool " + arguments;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

void Type(const std::string& keys) {
    Input("key " + keys);
}

void PointAt(const Rectangle& place) {
    Input("mousemove " + std::to_string(place.x + place.width / 2) + " " +
          std::to_string(place.y + place.height / 2));
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
    if (fSteps.empty() || fIsActing || !fSteps.front().condition())
        return;
    const Step step = fSteps.front();
    fSteps.pop_front();
    fIsActing = true;
    step.action();
    fIsActing = false;
    alarm(kStepLimit);
}

void Script::When(std::function<bool()> condition, std::function<void()> action) {
    fSteps.push_back({std::move(condition), std::move(action)});
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
