#pragma once

#include "UI/OSMenuHandle.h"

#include <vector>

namespace Kestrin {

/// The menus that an application has put into the menu bar. They leave it with this object.
class MenuBar {
public:
    MenuBar() = default;
    ~MenuBar();
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;

    /// Puts `menu` into the menu bar, before the menu with that ID, and holds it.
    void Insert(const OSMenuHandle& menu, short beforeMenuID);

    /// Takes every held menu out of the menu bar. They stay held, so that each rebuild takes out
    /// all that any earlier one put in.
    void RemoveAllFromMenuList();

private:
    std::vector<OSMenuHandle> fMenus;
};

} // namespace Kestrin
