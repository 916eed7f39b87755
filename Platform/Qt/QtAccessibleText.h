#pragma once

#include <QAccessibleWidget>

namespace Kestrin {

/// A widget whose value is a text in one line. Nothing of it is selected.
class AccessibleText : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    using QAccessibleWidget::QAccessibleWidget;

    virtual QString Text() const = 0;

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? Text() : QAccessibleWidget::text(kind);
    }

    QString text(int start, int end) const override { return Text().mid(start, end - start); }
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
