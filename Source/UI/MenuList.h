#pragma once

#include "UI/OSMenuHandle.h"

#include <list>

namespace Kestrin {

/// The menus that are installed in this process, in their order. Menus enter and leave it through
/// OSMenuHandle.
class MenuList {
public:
    static MenuList& Instance();

    const std::list<OSMenuHandle>& Menus() const { return fMenus; }
    bool Contains(short menuID) const;

private:
    friend class OSMenuHandle;

    MenuList() = default;

    std::list<OSMenuHandle>::iterator Find(short menuID);
    std::list<OSMenuHandle>::iterator PlaceBefore(short menuID);

    std::list<OSMenuHandle> fMenus;
};

} // namespace Kestrin
