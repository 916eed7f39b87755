#include "Platform/Qt/QtAccessibleText.h"
#include "Platform/Qt/QtFieldWidget.h"

#include <utility>

namespace Kestrin {

namespace {

/// How a text field, or the number in it, looks to assistive technologies. What they enter is
/// refused and judged like what is typed, as soon as the event loop turns: a field that is left may
/// open an alert.
class AccessibleField final : public AccessibleText,
                              public QAccessibleEditableTextInterface,
                              public QAccessibleValueInterface {
public:
    explicit AccessibleField(QtFieldWidget& field)
        : AccessibleText(&field)
        , fField(field) {}

    QAccessible::Role role() const override {
        return IsNumber() ? QAccessible::SpinBox : QAccessible::EditableText;
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = state.selectableText = true;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        if (type == QAccessible::ValueInterface && IsNumber())
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (IsNumber() && fField.isEnabled())
            names << increaseAction() << decreaseAction();
        return names;
    }

    void doAction(const QString& name) override {
        if (name == increaseAction())
            Soon([](QtFieldWidget& field) { field.PressKey(kNativeUpArrow); });
        else if (name == decreaseAction())
            Soon([](QtFieldWidget& field) { field.PressKey(kNativeDownArrow); });
        else
            AccessibleText::doAction(name);
    }

    // The number

    QVariant currentValue() const override { return Text().toInt(); }
    QVariant minimumValue() const override { return Description().minimum; }
    QVariant maximumValue() const override { return Description().maximum; }
    QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant& value) override {
        Soon([text = QString::number(value.toDouble(), 'f', 0)](QtFieldWidget& field) {
            field.Enter(text);
        });
    }

    // The text

    QString Text() const override { return fField.text(); }
    void selection(int, int* start, int* end) const override {
        *start = std::max(fField.selectionStart(), 0);
        *end = *start + static_cast<int>(fField.selectedText().size());
    }
    int selectionCount() const override { return fField.hasSelectedText() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int) override { fField.deselect(); }
    void setSelection(int, int start, int end) override { fField.setSelection(start, end - start); }
    int cursorPosition() const override { return fField.cursorPosition(); }
    void setCursorPosition(int position) override { fField.setCursorPosition(position); }

    QRect characterRect(int offset) const override {
        const auto widthBefore = [this](int position) {
            return fField.fontMetrics().horizontalAdvance(Text().left(position));
        };
        QRect place = fField.inputMethodQuery(Qt::ImCursorRectangle).toRect();
        place.translate(widthBefore(offset) - widthBefore(cursorPosition()), 0);
        place.setWidth(widthBefore(offset + 1) - widthBefore(offset));
        return {fField.mapToGlobal(place.topLeft()), place.size()};
    }

    int offsetAtPoint(const QPoint& point) const override {
        return fField.cursorPositionAt(fField.mapFromGlobal(point));
    }

    void deleteText(int start, int end) override { replaceText(start, end, {}); }
    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    void replaceText(int start, int end, const QString& text) override {
        Soon([=](QtFieldWidget& field) { field.Replace(start, end, text); });
    }

private:
    AccessibleDescription Description() const {
        // The host's; a field that is being retired has none.
        const auto* const host = dynamic_cast<QtView*>(fField.parentWidget()->parentWidget());
        return host ? host->Accessibility() : AccessibleDescription();
    }
    bool IsNumber() const { return Description().role == AccessibleRole::kNumberField; }

    void Soon(std::function<void(QtFieldWidget&)> change) {
        DoSoon(fField, [&field = fField, change = std::move(change)] { change(field); });
    }

    QtFieldWidget& fField;
};

} // namespace

QAccessibleInterface* NewAccessibleField(QtFieldWidget& field) {
    return new AccessibleField(field);
}

} // namespace Kestrin
