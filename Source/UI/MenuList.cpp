#include "UI/MenuList.h"

#include "UI/Internal/KestrinMenu.h"

#include "Platform/UI/NativeApplication.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace Kestrin {

namespace {

using Place = std::list<OSMenuHandle>::iterator;

constexpr short kFrontOfList = -1;
constexpr short kEndOfList = 0;

/// The place in the menu bar of the menu with that ID, -1 if it is not there.
int MenuBarIndexOf(short menuID) {
    const NativeMenu& bar = NativeApplication::MainMenu();
    for (int i = 0; i < bar.NumberOfItems(); ++i)
        if (bar.ItemAt(i).Tag() == static_cast<std::uint16_t>(menuID))
            return i;
    return -1;
}

/// The place in the menu bar before the first of the menus from `place` to `end` that is there,
/// else behind all.
int MenuBarIndexBefore(Place place, Place end) {
    for (; place != end; ++place)
        if (const int index = MenuBarIndexOf(place->GetMenuID()); index >= 0)
            return index;
    return NativeApplication::MainMenu().NumberOfItems();
}

void InsertIntoMenuBar(const std::shared_ptr<KestrinMenu>& menu, int index) {
    auto item = std::make_unique<NativeMenuItem>(std::u16string());
    item->SetTag(static_cast<std::uint16_t>(menu->GetID()));
    item->SetSubmenu(menu);
    NativeApplication::MainMenu().InsertItem(std::move(item), index);
}

void RemoveFromMenuBar(const std::shared_ptr<KestrinMenu>& menu) {
    NativeMenu& bar = NativeApplication::MainMenu();
    for (int i = 0; i < bar.NumberOfItems(); ++i)
        if (bar.ItemAt(i).Submenu() == menu)
            return bar.RemoveItem(i);
}

} // namespace

MenuList& MenuList::Instance() {
    static MenuList list;
    return list;
}

bool MenuList::Contains(short menuID) const {
    return std::any_of(fMenus.begin(), fMenus.end(),
                       [menuID](const OSMenuHandle& menu) { return menu.GetMenuID() == menuID; });
}

std::list<OSMenuHandle>::iterator MenuList::Find(short menuID) {
    return std::find_if(fMenus.begin(), fMenus.end(),
                        [menuID](const OSMenuHandle& menu) { return menu.GetMenuID() == menuID; });
}

std::list<OSMenuHandle>::iterator MenuList::PlaceBefore(short menuID) {
    if (menuID == kFrontOfList)
        return fMenus.begin();
    if (menuID == kEndOfList)
        return fMenus.end();
    return std::find_if(fMenus.begin(), fMenus.end(),
                        [menuID](const OSMenuHandle& menu) { return menu.GetMenuID() >= menuID; });
}

void OSMenuHandle::InsertMenuBeforeMenuID(short id) {
    if (IsEmpty())
        return;
    MenuList& list = MenuList::Instance();
    const auto place = list.PlaceBefore(id);
    list.fMenus.insert(place, *this);
    if (id >= 0)
        InsertIntoMenuBar(*fMenu, MenuBarIndexBefore(place, list.fMenus.end()));
}

void OSMenuHandle::RemoveFromMenuList() {
    if (IsEmpty())
        return;
    MenuList& list = MenuList::Instance();
    const auto place = list.Find(GetMenuID());
    if (place == list.fMenus.end())
        return;
    list.fMenus.erase(place);
    RemoveFromMenuBar(*fMenu);
}

} // namespace Kestrin
