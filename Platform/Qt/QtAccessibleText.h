#pragma once

#include <QAccessibleWidget>
#include <QWidget>
#include <functional>

namespace Kestrin {

/// Does to the widget what an assistive technology wants, as soon as the event loop turns: what
/// that opens would keep the assistive technology waiting for its answer. As at a press, an open
/// menu closes first, and nothing happens to a window behind a modal one.
void DoSoon(QWidget& widget, std::function<void()> what);

/// A widget whose value is a text in one line. Nothing of it is selected.
class AccessibleText : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    using QAccessibleWidget::QAccessibleWidget;

    virtual QString Text() const = 0;

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? Text() : QAccessibleWidget::text(kind);
    }

    QString text(int start, int end) const override { return Text().mid(start, end - start); }
    /// The focus that moves may leave a field, which then opens an alert.
    void doAction(const QString& name) override {
        if (name == setFocusAction())
            DoSoon(*widget(), [widget = widget()] { widget->setFocus(); });
        else
            QAccessibleWidget::doAction(name);
    }

    int characterCount() const override { return static_cast<int>(Text().size()); }
    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

    void selection(int, int* start, int* end) const override { *start = *end = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override {}
    QRect characterRect(int) const override { return {}; }
    int offsetAtPoint(const QPoint&) const override { return -1; }
    void scrollToSubstring(int, int) override {}
};

} // namespace Kestrin
