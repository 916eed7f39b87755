#include "Platform/Qt/QtPopUp.h"

#include "Platform/Qt/QtApplication.h"
#include "Platform/Qt/QtGeometry.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtTypeAhead.h"
#include "Platform/Qt/QtView.h"
#include "Platform/UI/NativeApplication.h"
#include "Platform/UI/NativeMenu.h"

#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QProxyStyle>
#include <QScreen>
#include <algorithm>
#include <vector>

namespace Kestrin {

namespace {

using WeakItem = std::weak_ptr<const NativeMenuItem>;

/// A list that shows longer texts would cover the screen: they are shortened, in the middle, since
/// names often differ at their ends alone.
constexpr int kWidestList = 640;

QString OneLine(QString title) {
    std::replace_if(title.begin(), title.end(), BreaksLine, QChar(QChar::Space));
    return title;
}

/// The program's style, but menus that are taller than the screen scroll instead of taking columns.
class ScrollingMenuStyle : public QProxyStyle {
public:
    ScrollingMenuStyle()
        : QProxyStyle(QApplication::style()->name()) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        return hint == SH_Menu_Scrollable ? 1
                                          : QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

/// The widget of an open menu. It is made for one opening from what the menu holds then.
class PopUpWidget : public QMenu {
public:
    /// It is at least `width` wide.
    PopUpWidget(const NativeMenu& menu, QWidget* parent, int width)
        : QMenu(parent) {
        setStyle(&fStyle);
        for (int i = 0; i < menu.NumberOfItems(); ++i)
            Add(menu.ItemAt(i), menu.IsItemEnabled(i));
        setMinimumWidth(std::max(0, width));
        ElideLongTexts(std::max(width, kWidestList));
    }

    /// Shows it with the corner of the item at `index` (-1: its own) at `where` and waits; the
    /// action chosen, here or in a submenu, or null.
    QAction* Track(QPoint where, int index) {
        fFirst = index >= 0 && index < actions().size() ? actions()[index] : nullptr;
        if (fFirst != nullptr)
            where.ry() -= actionGeometry(actions().front()).top(); // the menu's own upper margin
        return exec(where, fFirst);
    }

protected:
    void showEvent(QShowEvent* event) override {
        QMenu::showEvent(event);
        if (fFirst != nullptr)
            setActiveAction(fFirst);
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (!TakesAsText(*event))
            return QMenu::keyPressEvent(event);
        const int found = fTypeAhead.Type(event->text(), SelectableTitles(),
                                          static_cast<int>(actions().indexOf(activeAction())));
        if (found >= 0)
            setActiveAction(actions()[found]);
    }

    /// Of the window that the menu belongs to: a menu does not stay behind alone.
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide || event->type() == QEvent::Close)
            close();
        return false;
    }

private:
    void Add(const NativeMenuItem& item, bool enabled) {
        fTitles << ToQString(item.Title());
        QAction* action = addAction(QString());
        action->setMenuRole(QAction::NoRole);
        action->setData(QVariant::fromValue(item.weak_from_this()));
        // The toolkit draws an empty box beside a checkable item that is not checked.
        action->setCheckable(item.IsOn());
        action->setChecked(item.IsOn());
        action->setEnabled(enabled);
        if (item.Submenu() != nullptr)
            action->setMenu(new PopUpWidget(*item.Submenu(), this, 0));
    }

    void ElideLongTexts(int limit) {
        const int available =
            std::min(limit, parentWidget()->screen()->availableGeometry().width());
        const int widest = SetTexts(available);
        if (const int excess = sizeHint().width() - available; excess > 0)
            SetTexts(widest - excess);
    }

    /// Returns the width of the widest text.
    int SetTexts(int limit) {
        int widest = 0;
        for (int i = 0; i < actions().size(); ++i) {
            const QString text =
                fontMetrics().elidedText(OneLine(fTitles[i]), Qt::ElideMiddle, limit);
            actions()[i]->setText(WithoutMnemonics(text));
            widest = std::max(widest, fontMetrics().horizontalAdvance(text));
        }
        return widest;
    }

    bool TakesAsText(const QKeyEvent& event) const {
        const auto others = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
        if ((event.modifiers() & others) != 0 || event.text().isEmpty() ||
            !event.text()[0].isPrint())
            return false;
        return event.key() != Qt::Key_Space || fTypeAhead.IsGoingOn();
    }

    QStringList SelectableTitles() const {
        QStringList titles = fTitles;
        for (int i = 0; i < actions().size(); ++i)
            if (!actions()[i]->isEnabled())
                titles[i].clear();
        return titles;
    }

    ScrollingMenuStyle fStyle;
    QStringList fTitles;
    QAction* fFirst = nullptr;
    TypeAhead fTypeAhead;
};

/// To assistive technologies the focus was in the menu. The widget may be gone.
void TellFocus(QWidget* widget) {
    if (widget == nullptr || !widget->hasFocus())
        return;
    QAccessibleEvent event(widget, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

} // namespace

OpenPopUp::~OpenPopUp() {
    if (fWidget)
        fWidget->close();
}

WeakItem TrackPopUp(NativeMenu& menu, const NativeView& view, CGPoint where, int item,
                    OpenPopUp& shown) {
    WeakItem chosen;
    if (NativeApplication::Shared().IsTerminating())
        return chosen;
    const QPointer<QWidget> parent = WidgetOf(view);
    // It covers the control that it opened over, to its right edge.
    auto* const opened = new PopUpWidget(menu, parent, parent->width() - static_cast<int>(where.x));
    const QPointer<PopUpWidget> widget = opened;
    parent->window()->installEventFilter(opened);
    shown.fWidget = opened;
    const QAction* action = opened->Track(parent->mapToGlobal(ToQt(where)).toPoint(), item);
    // The chosen action is part of the widget, which goes with its parent.
    if (widget && action != nullptr)
        chosen = action->data().value<WeakItem>();
    delete widget.data();
    TellFocus(parent);
    RethrowEventFailure();
    return chosen;
}

} // namespace Kestrin
