#include "UI/DynamicMenu.h"

#include "Commands/ChainOfCommand.h"
#include "UI/MenuList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <tuple>
#include <vector>

using namespace Kestrin;
using testing::ElementsAre;

namespace {

UString Text(const char* text) {
    return UString(text, UString::kUTF8);
}

/// A listener that writes down what it is told and then does what the test wants.
struct Listener : MenuItemSelectedListener {
    using Choice = std::tuple<DynamicMenu*, int, unsigned int>;

    void ItemSelected(DynamicMenu* menu, unsigned short item, unsigned int value) override {
        choices.emplace_back(menu, item, value);
        if (then)
            then();
    }

    std::vector<Choice> choices;
    std::function<void()> then;
};

struct FilledMenu : DynamicMenu {
    FilledMenu() {
        AppendItem(Text("ten"), 10);
        AppendItem(Text("twenty"), 20);
        AppendItem(Text("twenty again"), 20);
    }

    CommandSpecifier Command(short item) {
        return CommandSpecifier::FromCode(GetMenu().GetMenuItemCommandID(item));
    }

    std::vector<bool> Checks() {
        std::vector<bool> checks;
        for (short i = 1; i <= GetMenu().NumMenuItems(); ++i)
            checks.push_back(GetMenu().IsMenuItemChecked(i));
        return checks;
    }
};

TEST(DynamicMenu, TheCurrentItemIsTheOneOfTheFirstEqualValue) {
    FilledMenu menu;
    EXPECT_TRUE(menu.GetCurrentItemStr().empty());
    menu.SetCurrentItemByValue(20);
    EXPECT_EQ(menu.GetCurrentItem(), 2);
    EXPECT_THAT(menu.Checks(), ElementsAre(false, true, false));
    menu.SetCurrentItemByValue(99);
    menu.SetCurrentItem(0);
    EXPECT_EQ(menu.GetCurrentItem(), 2);
    EXPECT_EQ(menu.GetCurrentValue(), 20u);
    EXPECT_TRUE(menu.GetCurrentItemStr() == Text("twenty"));
}

TEST(DynamicMenu, ACurrentItemAboveTheCountHasNoTextAndTheValueZero) {
    FilledMenu menu;
    menu.SetCurrentItem(3);
    menu.GetMenu().DeleteItem(3);
    EXPECT_TRUE(menu.GetCurrentItemStr().empty());
    menu.SetCurrentItem(9);
    EXPECT_EQ(menu.GetCurrentItem(), 9);
    EXPECT_EQ(menu.GetCurrentValue(), 0u);
    EXPECT_THAT(menu.Checks(), ElementsAre(false, false));
}

TEST(DynamicMenu, ItemsTakeCommandsFromThePoolAndGiveThemBack) {
    auto menu = std::make_unique<FilledMenu>();
    const unsigned int first = menu->Command(1).Code();
    EXPECT_LE(first, 10095u);
    EXPECT_EQ(menu->Command(2).Code(), first - 1);
    const short id = menu->GetMenu().GetMenuID();
    EXPECT_EQ(MenuList::Instance().Menus().front().GetMenuID(), id);
    menu.reset();
    EXPECT_FALSE(MenuList::Instance().Contains(id));
    DynamicMenu another;
    another.AppendItem(Text("item"), 0);
    EXPECT_EQ(another.GetMenu().GetMenuItemCommandID(1), first);
}

TEST(DynamicMenu, AChoiceBecomesCurrentAndIsToldToTheListenersInOrder) {
    FilledMenu menu;
    Listener first, second;
    std::vector<Listener*> order;
    first.then = [&] { order.push_back(&first); };
    second.then = [&] { order.push_back(&second); };
    menu.AddListener(&first);
    menu.AddListener(&second);
    EXPECT_TRUE(menu.HandleCommand(menu.Command(3)));
    EXPECT_THAT(first.choices, ElementsAre(Listener::Choice(&menu, 3, 20)));
    EXPECT_THAT(order, ElementsAre(&first, &second));
    EXPECT_EQ(menu.GetCurrentItem(), 3);
    EXPECT_FALSE(menu.HandleCommand({1, 3}));

    menu.GetMenu().EnableItem(2, false);
    EXPECT_TRUE(menu.CanHandle(menu.Command(1)));
    EXPECT_FALSE(menu.CanHandle(menu.Command(2)));
}

TEST(DynamicMenu, WithoutACurrentItemChoicesAreStillTold) {
    FilledMenu menu;
    Listener listener;
    menu.AddListener(&listener);
    menu.SetNoCurrentItem(true);
    menu.SetCurrentItem(1);
    menu.SetCurrentItemByValue(10);
    EXPECT_TRUE(menu.HandleCommand(menu.Command(2)));
    EXPECT_EQ(menu.GetCurrentItem(), 0);
    EXPECT_THAT(menu.Checks(), ElementsAre(false, false, false));
    EXPECT_EQ(listener.choices.size(), 1u);
}

TEST(DynamicMenu, CommandsOfSubMenusAreHandedOn) {
    FilledMenu menu, first, second;
    menu.AddSubMenu(&first);
    menu.AddSubMenu(&second);
    EXPECT_TRUE(menu.CanHandle(second.Command(1)));
    EXPECT_TRUE(menu.HandleCommand(second.Command(1)));
    EXPECT_EQ(second.GetCurrentItem(), 1);
    EXPECT_EQ(menu.GetCurrentItem(), 0);
    EXPECT_FALSE(menu.CanHandle({0, 1}));
}

TEST(DynamicMenu, AListenerMayDeleteTheMenuOrChangeTheListeners) {
    Listener early, removed, deleting, never;
    auto menu = std::make_unique<FilledMenu>();
    for (Listener* listener : {&early, &removed, &deleting, &never})
        menu->AddListener(listener);
    early.then = [&] {
        menu->RemoveListener(&removed);
        menu->AddListener(&never);
    };
    deleting.then = [&] { menu.reset(); };
    ChainOfCommand::Instance()->SetGopher(menu.get());
    EXPECT_TRUE(ChainOfCommand::Instance()->DispatchCommand(menu->Command(1)));
    EXPECT_EQ(early.choices.size(), 1u);
    EXPECT_EQ(deleting.choices.size(), 1u);
    EXPECT_TRUE(removed.choices.empty());
    EXPECT_TRUE(never.choices.empty());
    EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), nullptr);
}

TEST(DynamicMenu, WithoutAnEventAPopUpReturnsAtOnceAndGivesTheChainBack) {
    FilledMenu before, menu;
    ChainOfCommand::Instance()->SetGopher(&before);
    menu.SetSuccessor(&before);
    menu.PopupSelect(10, 10);
    EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), &before);
    EXPECT_EQ(menu.GetSuccessor(), &before);
    ChainOfCommand::Instance()->SetGopher(nullptr);
}

TEST(DynamicMenuDeathTest, RunningOutOfCommandsEndsTheProgram) {
    const auto fill = [] {
        DynamicMenu menu;
        for (int i = 0; i <= 4096; ++i)
            menu.AppendItem(UString(), 0);
    };
    EXPECT_DEATH(fill(), "");
}

} // namespace
