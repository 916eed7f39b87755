#include "Commands/ChainOfCommand.h"
#include "UI/DynamicMenu.h"

#include "Platform/UI/NativeApplication.h"
#include "tests/Source/UI/ViewTestSupport.h"
#include "tests/support/Desktop.h"

using namespace Kestrin;

namespace {

/// A control that pops its menu up at its own corner.
class Control : public View, public DynamicMenu {
public:
    /// The control may be gone behind this.
    void DoClick(const Point&, unsigned int, bool) override {
        const Point corner = ViewToScreen({0, 0});
        PopupSelect(static_cast<int>(corner.x), static_cast<int>(corner.y));
    }

    void ItemSelected(DynamicMenu*, unsigned short item, unsigned int) override {
        chosen = item;
        if (then)
            then();
    }

    int chosen = 0;
    std::function<void()> then;
};

class PopUp : public ShownWindow {
protected:
    PopUp() {
        ChainOfCommand::Instance()->SetGopher(&gopher);
        Place(*control, {20, 60, 170, 25});
        Append(5);
    }

    void DestroyWindow() {
        control.reset();
        Window::DestroyWindow(std::exchange(window, nullptr));
    }

    void Append(unsigned int count) {
        while (count-- > 0)
            control->AppendItem(Text("Surface " + std::to_string(control->GetNumItems() + 1)), 0);
    }

    /// Goes to the control and presses there.
    void Open(const std::string& press = "click 1") {
        script.When([this] { return root.IsViewActive(); },
                    [this, press] {
                        const Point middle = control->ViewToScreen({85, 12});
                        Desktop::PointAt({middle.x, middle.y});
                        Desktop::Input(press);
                    });
    }
    void OpenUntil(const std::function<void()>& closesIt) {
        Open();
        script.WhenMenuIsOpen([&](const Desktop::Menu&) { closesIt(); });
        script.Play();
        EXPECT_FALSE(Desktop::OpenMenu());
        EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), &gopher);
    }

    DynamicMenu gopher;
    std::unique_ptr<Control> control = std::make_unique<Control>();
    Desktop::Script script;
};

TEST_F(PopUp, OpensWithTheCurrentItemCheckedOverItsControlAndBorrowsTheChain) {
    control->SetCurrentItem(3);
    control->GetMenu().EnableItem(5, false);
    DynamicMenu successor;
    control->SetSuccessor(&successor);
    Open();
    script.WhenHighlighted(2, [&] {
        const Desktop::Menu menu = *Desktop::OpenMenu();
        ASSERT_EQ(menu.items.size(), 5u);
        EXPECT_EQ(menu.items[2].text, "Surface 3");
        EXPECT_TRUE(menu.items[2].isChecked && !menu.items[1].isChecked);
        EXPECT_EQ(menu.items[2].place.y, control->ViewToScreen({0, 0}).y);
        EXPECT_NEAR(menu.place.x, control->ViewToScreen({0, 0}).x, 2);
        EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), control.get());
        EXPECT_FALSE(menu.items[4].isEnabled);
        Desktop::PointAt(menu.items[4].place);
        Desktop::Input("click 1 key Escape");
    });
    script.Play();
    EXPECT_EQ(control->chosen, 0);
    EXPECT_EQ(control->GetCurrentItem(), 3);
    EXPECT_EQ(control->GetSuccessor(), &successor);
    EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), &gopher);
}

TEST_F(PopUp, TakesAChoiceByDragOrClickOverAnItemOnly) {
    for (const auto& [press, release] :
         {std::pair{"mousedown 1", "mouseup 1"}, {"click 1", "click 1"}}) {
        for (const std::string elsewhere : {"", "mousemove 5 5 "}) {
            control->chosen = 0;
            control->SetCurrentItem(1);
            Open(press);
            script.WhenMenuIsOpen([](const Desktop::Menu& menu) {
                Desktop::PointAt(menu.items[2].place);
                Desktop::PointAt(menu.items[3].place);
            });
            script.WhenHighlighted(3, [last = elsewhere + release] { Desktop::Input(last); });
            script.Play();
            EXPECT_EQ(control->chosen, elsewhere.empty() ? 4 : 0) << press << elsewhere;
        }
    }
}

TEST_F(PopUp, FiftyItemsScrollWithinTheScreen) {
    Append(45);
    control->SetCurrentItem(45);
    Open();
    script.WhenHighlighted(44, [] {
        const Rect menu = Desktop::OpenMenu()->place, screen = Desktop::Screen();
        EXPECT_GE(menu.y, screen.y);
        EXPECT_LE(menu.y + menu.height, screen.y + screen.height);
        EXPECT_LT(menu.width, 400) << "not in columns";
        Desktop::Type("Home");
    });
    script.WhenHighlighted(0, [] { Desktop::Type("Up"); });
    script.WhenHighlighted(49, [] { Desktop::Type("Return"); });
    script.Play();
    EXPECT_EQ(control->chosen, 50);
}

TEST_F(PopUp, ShowsTextsLiterallyInOneLineOfModerateWidth) {
    for (const std::string& text : {std::string(2000, 'W') + " 2", std::string("R&D\tLab\nTwo"),
                                    std::string("High \xF0\x9D\x84\x9E"), std::string()})
        control->AppendItem(Text(text), 0);
    Open();
    script.WhenMenuIsOpen([](const Desktop::Menu& menu) {
        EXPECT_GE(menu.place.x, 0);
        EXPECT_LE(menu.place.width, Desktop::Screen().width * 0.6);
        EXPECT_THAT(menu.items[5].text, testing::MatchesRegex("W+…W+ 2"));
        EXPECT_EQ(menu.items[6].text, "R&D Lab Two");
        EXPECT_EQ(menu.items[7].text, "High \xF0\x9D\x84\x9E");
        EXPECT_EQ(menu.items[7].place.height, menu.items[6].place.height);
        Desktop::Type("Escape");
    });
    script.Play();
}

TEST_F(PopUp, ClosesWhenItsWindowIsHiddenOrDestroyed) {
    OpenUntil([&] { window->ShowHide(false); });
    window->ShowHide(true);
    OpenUntil([&] { DestroyWindow(); });
}

TEST_F(PopUp, AChoiceMayDeleteTheControlAndItsWindow) {
    control->then = [&] { DestroyWindow(); };
    Open();
    script.WhenMenuIsOpen([](const Desktop::Menu&) { Desktop::Type("Down Return"); });
    script.Play();
    EXPECT_EQ(control, nullptr);
}

TEST_F(PopUp, EndsWithTheProgramAndOpensNoMoreThen) {
    Open();
    script.WhenMenuIsOpen([](const Desktop::Menu&) { NativeApplication::Shared().Terminate(); });
    NativeApplication::Shared().Run();
    NativeInput::Click(*control, {5, 5});
    EXPECT_EQ(control->chosen, 0);
    EXPECT_FALSE(Desktop::OpenMenu());
}

} // namespace
