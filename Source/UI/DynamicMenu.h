#pragma once

#include "Commands/CommandIDPool.h"
#include "Commands/RequestHandler.h"
#include "UI/OSMenuHandle.h"

#include <memory>
#include <vector>

namespace Kestrin {

class DynamicMenu;

/// Hears which item of a dynamic menu was chosen. Its menus forget a listener that goes.
class MenuItemSelectedListener {
public:
    MenuItemSelectedListener() = default;
    virtual ~MenuItemSelectedListener();
    MenuItemSelectedListener(const MenuItemSelectedListener&) = delete;
    MenuItemSelectedListener& operator=(const MenuItemSelectedListener&) = delete;

    /// `item` counts from 1, `value` is the item's own. The listener may delete the menu.
    virtual void ItemSelected(DynamicMenu* menu, unsigned short item, unsigned int value) = 0;
};

/// A menu built at run time: items with a text and a value, a current item that bears the check
/// mark, and listeners that hear of each choice. Item indices count from 1.
class DynamicMenu : public RequestHandler, public MenuItemSelectedListener {
public:
    DynamicMenu();
    ~DynamicMenu() override;

    // Items

    /// Returns the new item's index. Each item takes a number from the process's pool of commands;
    /// taking more than there are ends the program.
    unsigned short AppendItem(const UString& text, unsigned int value);
    unsigned int GetItemValue(unsigned short item) const;
    unsigned short GetNumItems() const;

    /// The platform menu beneath.
    OSMenuHandle& GetMenu() { return fMenu; }

    /// Commands that are none of this menu's items are offered to `menu`, which is not owned; one
    /// that goes is forgotten.
    void AddSubMenu(DynamicMenu* menu) { fSubMenus.push_back(menu); }

    // The current item

    /// 0 for none.
    unsigned short GetCurrentItem() const { return fCurrentItem; }
    unsigned int GetCurrentValue() const { return fCurrentValue; }

    /// An index above the count checks no item and has the value 0, but is taken; 0 changes
    /// nothing.
    void SetCurrentItem(unsigned short item);

    /// The first item of that value; where there is none, the current item stays.
    void SetCurrentItemByValue(unsigned int value);

    /// Empty where there is no such item.
    UString GetCurrentItemStr() const;

    /// While set, the menu keeps no current item.
    void SetNoCurrentItem(bool noCurrentItem) { fNoCurrentItem = noCurrentItem; }

    // Listeners: not owned, told in the order in which they were added, duplicates twice

    void AddListener(MenuItemSelectedListener* listener) { fListeners.push_back(listener); }
    void RemoveListener(MenuItemSelectedListener* listener);

    // Choosing

    /// Shows the menu with the current item at the point (x, y) of the screen and waits until it
    /// closes. Meanwhile the menu is the gopher; a choice reaches HandleCommand before this
    /// returns. The menu may be deleted while it is open.
    void PopupSelect(int x, int y);

    bool CanHandle(const CommandSpecifier& command) override;
    bool HandleCommand(const CommandSpecifier& command) override;

    /// Does nothing; the menu is the first of its own listeners.
    void ItemSelected(DynamicMenu* menu, unsigned short item, unsigned int value) override;

private:
    friend MenuItemSelectedListener;
    class BorrowedChain;

    bool IsItem(unsigned short item) const;
    unsigned short FindItemByCommand(const CommandSpecifier& command) const;
    unsigned short FindItemByValue(unsigned int value) const;
    void CheckItem(unsigned short item);
    void MakeCurrent(unsigned short item);
    template <typename Element, typename Call>
    bool AnyOf(const std::vector<Element*>& elements, Call call);
    bool OfferToSubMenus(const CommandSpecifier& command);
    void TellListeners(unsigned short item);

    OSMenuHandle fMenu;
    std::vector<DynamicMenu*> fSubMenus;
    std::vector<MenuItemSelectedListener*> fListeners;
    unsigned short fCurrentItem = 0;
    unsigned int fCurrentValue = 0;
    bool fNoCurrentItem = false;
    /// Expires with the menu; what calls listeners asks it.
    std::shared_ptr<const bool> fAlive = std::make_shared<bool>(true);

    static CommandIDPool sCmdIDPool;
    static unsigned int sLiveMenus;
    /// Never destroyed: listeners may go at the very end of the process.
    static std::vector<DynamicMenu*>& sMenuList;
};

} // namespace Kestrin
