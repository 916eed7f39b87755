#include "App/MenuBar.h"

namespace Kestrin {

MenuBar::~MenuBar() {
    RemoveAllFromMenuList();
}

void MenuBar::Insert(const OSMenuHandle& menu, short beforeMenuID) {
    fMenus.push_back(menu);
    fMenus.back().InsertMenuBeforeMenuID(beforeMenuID);
}

void MenuBar::RemoveAllFromMenuList() {
    for (OSMenuHandle& menu : fMenus)
        menu.RemoveFromMenuList();
}

} // namespace Kestrin
