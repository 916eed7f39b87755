#pragma once

#include "Platform/UI/CGGeometry.h"

#include <QMenu>
#include <QPointer>
#include <memory>

namespace Kestrin {

class NativeMenu;
class NativeMenuItem;
class NativeView;

/// The widget that shows a menu now, if any. It closes at the end of this object.
class OpenPopUp {
public:
    ~OpenPopUp();

private:
    friend QMenu* OpenWidgetOf(const NativeMenu&);
    friend std::weak_ptr<const NativeMenuItem> TrackPopUp(NativeMenu&, const NativeView&, CGPoint,
                                                          int, OpenPopUp&);

    QPointer<QMenu> fWidget;
};

/// The widget that shows the menu now; null for none.
QMenu* OpenWidgetOf(const NativeMenu& menu);

/// Shows the menu as NativeMenu::PopUp says and returns the item that was chosen, if any and if it
/// still exists. `shown` is the menu's own.
std::weak_ptr<const NativeMenuItem> TrackPopUp(NativeMenu& menu, const NativeView& view,
                                               CGPoint where, int item, OpenPopUp& shown);

} // namespace Kestrin
