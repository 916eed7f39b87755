#include "UI/DynamicMenu.h"

#include "Commands/ChainOfCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

using namespace Kestrin;
using testing::ElementsAre;

namespace {

/// A listener that notes the items it is told of and then does what the test wants.
struct Listener : MenuItemSelectedListener {
    void ItemSelected(DynamicMenu*, unsigned short item, unsigned int value) override {
        choices.emplace_back(item, value);
        if (then)
            then();
    }

    std::vector<std::pair<int, unsigned int>> choices;
    std::function<void()> then;
};

struct FilledMenu : DynamicMenu {
    FilledMenu() {
        for (const unsigned int value : {10, 20, 20})
            AppendItem(UString("item " + std::to_string(value), UString::kASCII), value);
    }

    CommandSpecifier Command(short item) {
        return CommandSpecifier::FromCode(GetMenu().GetMenuItemCommandID(item));
    }
};

TEST(DynamicMenu, TheCurrentItemIsTheFirstOfItsValueAndMayBeAboveTheCount) {
    FilledMenu menu;
    menu.SetCurrentItemByValue(20);
    menu.SetCurrentItemByValue(99);
    menu.SetCurrentItem(0);
    EXPECT_EQ(menu.GetCurrentItem(), 2);
    EXPECT_EQ(menu.GetCurrentItemStr().utf8_str(), "item 20");
    menu.SetCurrentItem(9);
    EXPECT_EQ(menu.GetCurrentItem(), 9);
    EXPECT_EQ(menu.GetCurrentValue(), 0u);
    EXPECT_TRUE(menu.GetCurrentItemStr().empty());
    EXPECT_FALSE(menu.GetMenu().IsMenuItemChecked(2));
}

TEST(DynamicMenu, AChoiceBecomesCurrentUnlessThereIsNoneAndIsToldEitherWay) {
    for (const bool noCurrentItem : {false, true}) {
        FilledMenu menu;
        Listener listener;
        menu.AddListener(&listener);
        menu.SetNoCurrentItem(noCurrentItem);
        EXPECT_TRUE(menu.HandleCommand(menu.Command(3)));
        EXPECT_THAT(listener.choices, ElementsAre(std::pair(3, 20u)));
        EXPECT_EQ(menu.GetCurrentItem(), noCurrentItem ? 0 : 3);
        EXPECT_EQ(menu.GetMenu().IsMenuItemChecked(3), !noCurrentItem);
    }
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
    EXPECT_TRUE(removed.choices.empty() && never.choices.empty());
    EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), nullptr);
}

TEST(DynamicMenu, ACommandGoesOnToTheSuccessorsThatAreLeft) {
    FilledMenu last;
    auto middle = std::make_unique<FilledMenu>();
    FilledMenu first;
    const CommandSpecifier command = middle->Command(1);
    first.SetSuccessor(middle.get());
    middle->SetSuccessor(&last);
    ChainOfCommand& chain = *ChainOfCommand::Instance();
    chain.SetGopher(&first);
    EXPECT_TRUE(chain.DispatchCommand(command));
    EXPECT_EQ(middle->GetCurrentItem(), 1);
    middle.reset();
    EXPECT_EQ(chain.GetGopher(), &last) << "what stood in front of it drops out";
    EXPECT_FALSE(chain.DispatchCommand(command));
    EXPECT_TRUE(chain.SetGopher(nullptr));
}

TEST(DynamicMenu, ForgetsSubMenusAndListenersThatGo) {
    FilledMenu menu;
    auto subMenu = std::make_unique<FilledMenu>();
    auto listener = std::make_unique<Listener>();
    menu.AddSubMenu(subMenu.get());
    menu.AddListener(listener.get());
    const CommandSpecifier command = subMenu->Command(1);
    EXPECT_TRUE(menu.HandleCommand(command));
    subMenu.reset();
    listener.reset();
    EXPECT_FALSE(menu.CanHandle(command) || menu.HandleCommand(command));
    EXPECT_TRUE(menu.HandleCommand(menu.Command(1)));
}

} // namespace
