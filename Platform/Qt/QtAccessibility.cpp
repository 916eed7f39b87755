#include "Platform/Qt/QtAccessibleText.h"
#include "Platform/Qt/QtFieldWidget.h"
#include "Platform/Qt/QtPopUp.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtWidgets.h"
#include "Platform/UI/NativeMenu.h"

#include <QApplication>
#include <utility>
#include <vector>

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
    case AccessibleRole::kNumberField:
        return QAccessible::SpinBox;
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

const NativeMenu* MenuOf(const QtView& view) {
    return view.Accessibility().menu.get();
}

/// The widget that shows the view's menu; null while that is closed.
QMenu* ListOf(const QtView& view) {
    return MenuOf(view) ? OpenWidgetOf(*MenuOf(view)) : nullptr;
}

/// An item of a view's menu, which is there whether the menu is open or not.
class AccessibleItem final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    /// The view outlives it.
    AccessibleItem(QtView& view, int index)
        : fView(view)
        , fIndex(index) {}

    int Index() const { return fIndex; }

    bool isValid() const override {
        return MenuOf(fView) && fIndex < MenuOf(fView)->NumberOfItems();
    }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&fView);
    }
    QWindow* window() const override { return parent()->window(); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? ToQString(Item().Title()) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}

    QAccessible::State state() const override {
        QAccessible::State state;
        const QMenu* const list = ListOf(fView);
        state.selectable = state.focusable = true;
        state.selected = isValid() && Item().IsOn();
        state.disabled = !CanBeChosen();
        state.offscreen = list == nullptr;
        state.focused = list && list->actions().indexOf(list->activeAction()) == fIndex;
        return state;
    }

    QRect rect() const override {
        const QMenu* const list = ListOf(fView);
        if (list == nullptr || fIndex >= list->actions().size())
            return {};
        const QRect place = list->actionGeometry(list->actions()[fIndex]);
        return {list->mapToGlobal(place.topLeft()), place.size()};
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override {
        return CanBeChosen() ? QStringList{pressAction()} : QStringList();
    }

    void doAction(const QString& name) override {
        if (name != pressAction() || !CanBeChosen())
            return;
        DoSoon(fView, [&view = fView, weak = Item().weak_from_this()] {
            if (const auto item = weak.lock())
                view.Press(
                    [&](NativeViewClient& client) { client.HandleAccessibilityChoice(*item); });
        });
    }

    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    const NativeMenuItem& Item() const { return MenuOf(fView)->ItemAt(fIndex); }
    bool CanBeChosen() const {
        return isValid() && fView.IsUsable() && MenuOf(fView)->IsItemEnabled(fIndex);
    }

    QtView& fView;
    int fIndex;
};

/// How a view looks to assistive technologies.
class AccessibleView final : public AccessibleText {
public:
    explicit AccessibleView(QtView& view)
        : AccessibleText(&view)
        , fView(view) {}

    ~AccessibleView() override {
        for (const QAccessible::Id item : fItems)
            QAccessible::deleteAccessibleInterface(item);
    }

    /// What a text field inside it is, it is not once more.
    QAccessible::Role role() const override {
        return fView.focusProxy() ? QAccessible::Client : RoleOf(fView.Accessibility().role);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.disabled = !fView.IsUsable();
        state.hasPopup = state.expandable = MenuOf(fView) != nullptr;
        state.expanded = ListOf(fView) != nullptr;
        state.collapsed = state.expandable && !state.expanded;
        return state;
    }

    QString Text() const override {
        const NativeMenu* const menu = MenuOf(fView);
        for (int i = 0; menu && i < menu->NumberOfItems(); ++i)
            if (menu->ItemAt(i).IsOn())
                return ToQString(menu->ItemAt(i).Title());
        return {};
    }

    // The items of its menu

    int childCount() const override {
        return MenuOf(fView) ? MenuOf(fView)->NumberOfItems() : QAccessibleWidget::childCount();
    }

    QAccessibleInterface* child(int index) const override {
        if (MenuOf(fView) == nullptr || index < 0 || index >= childCount())
            return QAccessibleWidget::child(index);
        const auto place = static_cast<std::size_t>(index);
        while (fItems.size() <= place)
            fItems.push_back(QAccessible::registerAccessibleInterface(
                new AccessibleItem(fView, static_cast<int>(fItems.size()))));
        return QAccessible::accessibleInterface(fItems[place]);
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* const item = dynamic_cast<const AccessibleItem*>(child);
        return item ? item->Index() : QAccessibleWidget::indexOfChild(child);
    }

    // What can be done with it

    void* interface_cast(QAccessible::InterfaceType type) override {
        // AT-SPI has no other place for the value of what is neither a number nor editable.
        if (type == QAccessible::TextInterface && MenuOf(fView))
            return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (CanBePressed(fView.Accessibility().role) && fView.IsUsable())
            names.prepend(pressAction());
        return names;
    }

    void doAction(const QString& name) override {
        if (name != pressAction())
            return AccessibleText::doAction(name);
        const bool closesList = ListOf(fView) != nullptr;
        DoSoon(fView, [closesList, &view = fView] {
            if (!closesList)
                view.Press([](NativeViewClient& client) { client.HandleAccessibilityPress(); });
        });
    }

private:
    QtView& fView;
    mutable std::vector<QAccessible::Id> fItems;
};

/// The open list of a view's menu. Its items are those of the view.
class AccessibleList final : public QAccessibleWidget {
public:
    AccessibleList(QMenu& list, QtView& view)
        : QAccessibleWidget(&list, QAccessible::PopupMenu)
        , fView(view) {}

    int childCount() const override { return Owner()->childCount(); }
    QAccessibleInterface* child(int index) const override { return Owner()->child(index); }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return Owner()->indexOfChild(child);
    }

private:
    QAccessibleInterface* Owner() const { return QAccessible::queryAccessibleInterface(&fView); }

    QtView& fView;
};

QAccessibleInterface* AccessibleListOf(QMenu& list) {
    auto* const view = dynamic_cast<QtView*>(list.parentWidget());
    return view && ListOf(*view) == &list ? new AccessibleList(list, *view) : nullptr;
}

QAccessibleInterface* AccessibleOf(const QString&, QObject* object) {
    if (auto* view = dynamic_cast<QtView*>(object))
        return new AccessibleView(*view);
    if (auto* field = dynamic_cast<QtFieldWidget*>(object))
        return NewAccessibleField(*field);
    if (auto* list = qobject_cast<QMenu*>(object))
        return AccessibleListOf(*list);
    auto* window = dynamic_cast<QtWindow*>(object);
    return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

} // namespace

void InstallAccessibility() {
    static const bool sInstalled = (QAccessible::installFactory(AccessibleOf), true);
    static_cast<void>(sInstalled);
}

void DoSoon(QWidget& widget, std::function<void()> what) {
    const auto perform = [&widget, what = std::move(what)] {
        if (QWidget* const menu = QApplication::activePopupWidget())
            menu->close();
        const QWidget* const modal = QApplication::activeModalWidget();
        if (widget.isEnabled() && (modal == nullptr || modal == widget.window()))
            what();
    };
    QMetaObject::invokeMethod(&widget, perform, Qt::QueuedConnection);
}

void TellAccessibleValueOf(QWidget& widget) {
    const QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(&widget);
    QAccessibleValueChangeEvent value(&widget, told->text(QAccessible::Value));
    QAccessible::updateAccessibility(&value);
    if (told->role() != QAccessible::ComboBox)
        return;
    QAccessibleEvent selection(&widget, QAccessible::SelectionWithin);
    QAccessible::updateAccessibility(&selection);
}

} // namespace Kestrin
