#include "tests/support/Desktop.h"

#include "Platform/Qt/QtText.h"
#include "Platform/UI/NativeApplication.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
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
#include <deque>

namespace Desktop {

using Kestrin::ToUtf8;

namespace {

constexpr int kPollInterval = 5;   // milliseconds
constexpr int kStepLimit = 10'000; // milliseconds

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

struct Script::Data {
    struct Step {
        std::function<bool()> condition;
        std::function<void()> action;
    };

    bool IsDone() const { return steps.empty() && !isActing; }

    void Poll() {
        if (steps.empty() || isActing)
            return;
        if (!steps.front().condition())
            return CheckLimit();
        const Step step = steps.front();
        steps.pop_front();
        isActing = true;
        step.action();
        isActing = false;
        sinceStep.start();
    }

    void CheckLimit() {
        if (!sinceStep.hasExpired(kStepLimit))
            return;
        ADD_FAILURE() << "A step of the script waits in vain; " << steps.size() << " are left.";
        steps.clear();
        QCoreApplication::exit();
    }

    std::deque<Step> steps;
    bool isActing = false;
    QElapsedTimer sinceStep;
    QTimer timer;
};

Script::Script() {
    Kestrin::NativeApplication::Shared();
    fData = std::make_unique<Data>();
    fData->sinceStep.start();
    QObject::connect(&fData->timer, &QTimer::timeout, [this] { fData->Poll(); });
    fData->timer.start(kPollInterval);
}

Script::~Script() {
    EXPECT_TRUE(fData->IsDone()) << fData->steps.size() << " steps of the script were not taken.";
}

void Script::When(std::function<bool()> condition, std::function<void()> action) {
    fData->steps.push_back({std::move(condition), std::move(action)});
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
    while (!fData->IsDone())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace Desktop
