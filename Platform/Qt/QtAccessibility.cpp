#include "Platform/Qt/QtWidgets.h"

#include <QAccessibleWidget>

namespace Kestrin {

namespace {

QAccessible::Role RoleOf(AccessibleRole role) {
    switch (role) {
    case AccessibleRole::kButton:
        return QAccessible::PushButton;
    case AccessibleRole::kPopUpButton:
        return QAccessible::ComboBox;
    case AccessibleRole::kStaticText:
        return QAccessible::StaticText;
    case AccessibleRole::kTextField:
        return QAccessible::EditableText;
    case AccessibleRole::kGroup:
        return QAccessible::Grouping;
    case AccessibleRole::kNone:
        break;
    }
    return QAccessible::Client;
}

bool CanBePressed(AccessibleRole role) {
    return role == AccessibleRole::kButton || role == AccessibleRole::kPopUpButton;
}

/// How a view looks to assistive technologies.
class AccessibleView final : public QAccessibleWidget {
public:
    explicit AccessibleView(QtView& view)
        : QAccessibleWidget(&view)
        , fView(view) {}

    QAccessible::Role role() const override { return RoleOf(fView.GetAccessibleRole()); }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.disabled = !fView.IsUsable();
        return state;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value)
            return fView.AccessibleValue();
        const QString text = QAccessibleWidget::text(kind);
        // AT-SPI has no other place for the value of what is neither a number nor editable.
        const bool isWithValue = kind == QAccessible::Name && !fView.AccessibleValue().isEmpty();
        return isWithValue ? text + QChar::Space + fView.AccessibleValue() : text;
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (CanBePressed(fView.GetAccessibleRole()) && fView.IsUsable())
            names.prepend(pressAction());
        return names;
    }

    void doAction(const QString& name) override {
        if (name == pressAction() && fView.Client())
            fView.Client()->HandleAccessibilityPress();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QtView& fView;
};

QAccessibleInterface* AccessibleOf(const QString&, QObject* object) {
    if (auto* view = dynamic_cast<QtView*>(object))
        return new AccessibleView(*view);
    auto* window = dynamic_cast<QtWindow*>(object);
    return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

} // namespace

void InstallViewAccessibility() {
    static const bool sInstalled = (QAccessible::installFactory(AccessibleOf), true);
    static_cast<void>(sInstalled);
}

} // namespace Kestrin
