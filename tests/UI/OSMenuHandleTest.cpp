#include "UI/OSMenuHandle.h"

#include "UI/KestrinMenu.h"

#include "Platform/UI/NativeApplication.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using namespace Kestrin;
using testing::ElementsAre;

namespace {

std::vector<short> MenuBarIDs() {
    std::vector<short> ids;
    NativeMenu& bar = NativeApplication::MainMenu();
    for (int i = 0; i < bar.NumberOfItems(); ++i)
        ids.push_back(static_cast<const KestrinMenu&>(*bar.ItemAt(i).Submenu()).GetID());
    return ids;
}

TEST(OSMenuHandle, TheListTakesMenusAtTheFrontTheEndOrByID) {
    std::vector<OSMenuHandle> menus;
    for (const auto& [id, before] :
         {std::pair{20, 0}, {40, 0}, {30, 40}, {10, 15}, {5, -1}, {50, 99}}) {
        menus.push_back(OSMenuHandle::CreateNewStandaloneMenu(static_cast<short>(id)));
        menus.back().InsertMenuBeforeMenuID(static_cast<short>(before));
    }
    OSMenuHandle().InsertMenuBeforeMenuID(0);
    EXPECT_THAT(MenuBarIDs(), ElementsAre(10, 20, 30, 40, 50));

    menus[1].RemoveFromMenuList();
    EXPECT_THAT(MenuBarIDs(), ElementsAre(10, 20, 30, 50));
    for (OSMenuHandle& menu : menus)
        menu.RemoveFromMenuList();
    EXPECT_TRUE(MenuBarIDs().empty());
}

TEST(OSMenuHandle, NewMenusAvoidThePrototypesAndReportWhenNoIDIsLeft) {
    const auto newID = [] { return OSMenuHandle::CreateNewHierarchicalMenu().GetMenuID(); };
    const short next = static_cast<short>(newID() + 1);
    OSMenuHandle::CreateNewStandaloneMenu(next).MakePrototypeMenu();
    EXPECT_EQ(newID(), next + 1);

    OSMenuHandle found;
    EXPECT_TRUE(OSMenuHandle::GetPrototypeMenu(next, found));
    EXPECT_EQ(found.GetMenuID(), next);

    for (short id = 2; id <= 32766; ++id)
        OSMenuHandle::CreateNewStandaloneMenu(id).MakePrototypeMenu();
    EXPECT_EQ(newID(), 1);
    OSMenuHandle::CreateNewStandaloneMenu(1).MakePrototypeMenu();
    EXPECT_THROW(newID(), int);
}

} // namespace
