#include "UI/OSMenuHandle.h"

#include "Commands/ChainOfCommand.h"
#include "UI/KestrinMenu.h"
#include "UI/MenuList.h"

#include "Platform/UI/NativeApplication.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

using namespace Kestrin;
using testing::ElementsAre;

namespace {

std::vector<short> ListedIDs() {
    std::vector<short> ids;
    for (const OSMenuHandle& menu : MenuList::Instance().Menus())
        ids.push_back(menu.GetMenuID());
    return ids;
}

std::vector<short> MenuBarIDs() {
    std::vector<short> ids;
    NativeMenu& bar = NativeApplication::MainMenu();
    for (int i = 0; i < bar.NumberOfItems(); ++i)
        ids.push_back(static_cast<const KestrinMenu&>(*bar.ItemAt(i).Submenu()).GetID());
    return ids;
}

/// Takes every command and keeps the last.
struct Taker : RequestHandler {
    Taker()
        : RequestHandler(nullptr) {
        ChainOfCommand::Instance()->SetGopher(this);
    }
    bool CanHandle(const CommandSpecifier&) override { return wants; }
    bool HandleCommand(const CommandSpecifier& command) override {
        last = command;
        return true;
    }
    bool wants = true;
    CommandSpecifier last;
};

TEST(OSMenuHandle, ItemsKeepTheirTextCommandValueAndCheck) {
    OSMenuHandle menu = OSMenuHandle::CreateNewStandaloneMenu(7);
    const UString text("R&D\tSouth \xF0\x9D\x84\x9E", UString::kUTF8);
    EXPECT_EQ(menu.AppendItem(UString("first", UString::kASCII)), 1);
    EXPECT_EQ(menu.AppendItem(text), 2);
    EXPECT_TRUE(menu.GetMenuItemText(2) == text);
    EXPECT_EQ(menu.GetMenuItemRefCon(2), 0u);
    menu.SetMenuItemRefCon(2, 0xFFFFFFFF);
    menu.SetMenuItemCommandID(2, 0x80010003);
    menu.SetMenuItemCheck(2, true);
    menu.EnableItem(1, false);
    menu.DeleteItem(1);
    ASSERT_EQ(menu.NumMenuItems(), 1);
    EXPECT_EQ(menu.GetMenuItemRefCon(1), 0xFFFFFFFF);
    EXPECT_EQ(menu.GetMenuItemCommandID(1), 0x80010003);
    EXPECT_TRUE(menu.IsMenuItemChecked(1));
    EXPECT_TRUE(menu.IsItemEnabled(1));
}

TEST(OSMenuHandle, CopiesShareTheMenuUntilTheLastOfThem) {
    OSMenuHandle copy;
    EXPECT_TRUE(copy.IsEmpty());
    {
        OSMenuHandle menu = OSMenuHandle::CreateNewStandaloneMenu(-5);
        copy = menu;
        menu.AppendItem(UString("item", UString::kASCII));
    }
    const OSMenuHandle another(copy);
    copy = OSMenuHandle();
    EXPECT_EQ(another.NumMenuItems(), 1);
    EXPECT_EQ(another.GetMenuID(), -5);
}

TEST(OSMenuHandle, TheListTakesMenusAtTheFrontTheEndOrByID) {
    std::vector<OSMenuHandle> menus;
    for (const auto& [id, before] :
         {std::pair{20, 0}, {40, 0}, {30, 40}, {10, 15}, {5, -1}, {50, 99}}) {
        menus.push_back(OSMenuHandle::CreateNewStandaloneMenu(static_cast<short>(id)));
        menus.back().InsertMenuBeforeMenuID(static_cast<short>(before));
    }
    OSMenuHandle().InsertMenuBeforeMenuID(0);
    EXPECT_THAT(ListedIDs(), ElementsAre(5, 10, 20, 30, 40, 50));
    EXPECT_THAT(MenuBarIDs(), ElementsAre(10, 20, 30, 40, 50));

    OSMenuHandle::CreateNewStandaloneMenu(77).RemoveFromMenuList();
    menus[1].RemoveFromMenuList();
    EXPECT_THAT(ListedIDs(), ElementsAre(5, 10, 20, 30, 50));
    EXPECT_THAT(MenuBarIDs(), ElementsAre(10, 20, 30, 50));
    for (OSMenuHandle& menu : menus)
        menu.RemoveFromMenuList();
    EXPECT_TRUE(ListedIDs().empty());
    EXPECT_TRUE(MenuBarIDs().empty());
}

TEST(OSMenuHandle, NewMenusAvoidThePrototypesAndReportWhenNoIDIsLeft) {
    const short next =
        static_cast<short>(OSMenuHandle::CreateNewHierarchicalMenu().GetMenuID() + 1);
    OSMenuHandle::CreateNewStandaloneMenu(next).MakePrototypeMenu();
    EXPECT_EQ(OSMenuHandle::CreateNewHierarchicalMenu().GetMenuID(), next + 1);

    OSMenuHandle found;
    EXPECT_TRUE(OSMenuHandle::GetPrototypeMenu(next, found));
    EXPECT_EQ(found.GetMenuID(), next);
    EXPECT_FALSE(OSMenuHandle::GetPrototypeMenu(32767, found));

    for (short id = 2; id <= 32766; ++id)
        OSMenuHandle::CreateNewStandaloneMenu(id).MakePrototypeMenu();
    EXPECT_EQ(OSMenuHandle::CreateNewHierarchicalMenu().GetMenuID(), 1);
    EXPECT_EQ(OSMenuHandle::CreateNewHierarchicalMenu().GetMenuID(), 1);
    OSMenuHandle::CreateNewStandaloneMenu(1).MakePrototypeMenu();
    EXPECT_THROW(OSMenuHandle::CreateNewHierarchicalMenu(), int);
}

TEST(OSMenuHandle, ACopyOfAPlatformMenuHasItsIDAndItemsOfItsOwn) {
    KestrinMenu menu;
    menu.SetID(12);
    menu.AddItem(std::make_unique<KestrinMenuItem>(UString("item", UString::kASCII)));
    const auto copy = std::dynamic_pointer_cast<KestrinMenu>(menu.Copy());
    menu.ItemAt(0).SetOn(true);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetID(), 12);
    EXPECT_EQ(copy->ItemAt(0).Title(), u"item");
    EXPECT_FALSE(copy->ItemAt(0).IsOn());
}

TEST(OSMenuHandle, TheMenuTargetSendsAndAsksForTheItemsCommand) {
    Taker taker;
    KestrinMenuItem item(UString("Paste", UString::kASCII));
    item.SetTag(0x00018005);
    EXPECT_TRUE(MenuTargetSingleton::Instance().ValidateMenuItem(item));
    MenuTargetSingleton::Instance().DoMenu(item);
    EXPECT_EQ(taker.last.menuID, 1);
    EXPECT_EQ(taker.last.menuItem, static_cast<short>(0x8005));
    taker.wants = false;
    EXPECT_FALSE(MenuTargetSingleton::Instance().ValidateMenuItem(item));
}

} // namespace
