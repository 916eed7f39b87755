#include "Commands/ChainOfCommand.h"
#include "UI/DynamicMenu.h"
#include "UI/View.h"
#include "UI/Window.h"

#include "Platform/UI/NativeApplication.h"
#include "tests/support/Desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

using namespace Kestrin;
using testing::Each;
using testing::Field;

namespace {

UString Text(const std::string& text) {
    return UString(text, UString::kUTF8);
}

std::string Center(const Desktop::Rectangle& r) {
    return std::to_string(r.x + r.width / 2) + " " + std::to_string(r.y + r.height / 2);
}

/// A control that pops its menu up at its own corner.
class Control : public View, public DynamicMenu {
public:
    explicit Control(View* parent) {
        SetDimensions(200, 25);
        PlaceInView(parent, 50, 40);
        ShowHide(true);
    }

    void DoClick(const Point&, unsigned int, bool) override { PopUp(); }

    bool DoTextInput(const UString& text, unsigned int, unsigned char) override {
        if (!(text == Text(" ")))
            return false;
        PopUp();
        return true;
    }

    /// The control may be gone behind this.
    void PopUp() {
        const Point corner = ViewToScreen({0, 0});
        bool& hasReturned = *returned;
        PopupSelect(static_cast<int>(corner.x), static_cast<int>(corner.y));
        hasReturned = true;
    }

    void ItemSelected(DynamicMenu*, unsigned short item, unsigned int) override {
        chosen = item;
        if (then)
            then();
    }

    Desktop::Rectangle OnScreen() const {
        const Point corner = ViewToScreen({0, 0});
        return {static_cast<int>(corner.x), static_cast<int>(corner.y), 200, 25};
    }

    int chosen = 0;
    std::function<void()> then;
    std::shared_ptr<bool> returned = std::make_shared<bool>(false);
};

/// Whoever has the chain before a pop-up opens.
struct Gopher : RequestHandler {
    Gopher()
        : RequestHandler(nullptr) {
        ChainOfCommand::Instance()->SetGopher(this);
    }
};

class PopUp : public testing::Test, public Window::WindowEventClient {
protected:
    PopUp() {
        NativeApplication::Shared();
        window = Window::Create(*this, Text("Pop-up"), 300, 150, 0);
        control = std::make_unique<Control>(window->GetRootView());
        window->Activate();
    }

    ~PopUp() override {
        control.reset();
        Window::DestroyWindow(window);
    }

    void WindowClosedNotification(Window*) override {
        control.reset();
        Window::DestroyWindow(std::exchange(window, nullptr));
    }
    void WindowActivationChanged(Window*, bool isActive) override { active = isActive; }

    void Fill(int count) {
        for (int i = 1; i <= count; ++i)
            control->AppendItem(Text("Surface " + std::to_string(i)), static_cast<unsigned>(i));
    }

    bool HasReturned() const { return *returned; }

    /// The first step: the pointer goes to the control, which is on the screen, and `action`
    /// follows.
    void AtControl(std::function<void()> action) {
        script.When([this] { return active; },
                    [this, action] {
                        Desktop::Input("mousemove " + Center(control->OnScreen()));
                        returned = control->returned;
                        action();
                    });
    }
    void Click() {
        AtControl([] { Desktop::Input("click 1"); });
    }

    /// Takes the steps and waits until the pop-up has returned.
    void Play() {
        script.When([this] { return HasReturned(); }, [] {});
        script.Play();
    }

    Gopher gopher;
    Window* window = nullptr;
    std::unique_ptr<Control> control;
    std::shared_ptr<bool> returned;
    bool active = false;
    Desktop::Script script;
};

TEST_F(PopUp, OpensWithTheCurrentItemCheckedOverItsControl) {
    Fill(5);
    control->SetCurrentItem(3);
    Click();
    script.WhenHighlighted(2, [&] {
        const Desktop::Menu menu = *Desktop::OpenMenu();
        Desktop::Picture("pop-up");
        ASSERT_EQ(menu.items.size(), 5u);
        EXPECT_EQ(menu.items[2].text, "Surface 3");
        EXPECT_TRUE(menu.items[2].isChecked);
        EXPECT_FALSE(menu.items[1].isChecked);
        EXPECT_EQ(menu.items[2].place.y, control->OnScreen().y);
        EXPECT_NEAR(menu.place.x, control->OnScreen().x, 2);
        EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), control.get());
        Desktop::Type("Escape");
    });
    Play();
    EXPECT_EQ(control->chosen, 0);
    EXPECT_EQ(control->GetCurrentItem(), 3);
    EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), &gopher);
}

TEST_F(PopUp, TakesAChoiceByPressDragRelease) {
    Fill(5);
    AtControl([] { Desktop::Input("mousedown 1"); });
    script.WhenMenuIsOpen([](const Desktop::Menu& menu) {
        Desktop::Input("mousemove " + Center(menu.items[2].place));
        Desktop::Input("mousemove " + Center(menu.items[3].place));
    });
    script.WhenHighlighted(3, [] { Desktop::Input("mouseup 1"); });
    Play();
    EXPECT_EQ(control->chosen, 4);
    EXPECT_EQ(control->GetCurrentItem(), 4);
}

TEST_F(PopUp, TakesAChoiceByTwoClicks) {
    Fill(5);
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu& menu) {
        Desktop::Input("mousemove " + Center(menu.items[1].place) + " click 1");
    });
    Play();
    EXPECT_EQ(control->chosen, 2);
}

TEST_F(PopUp, ClosesWithoutAChoiceByAClickOrAReleaseElsewhere) {
    Fill(5);
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu&) { Desktop::Input("mousemove 5 5 click 1"); });
    Play();
    *returned = false;
    AtControl([] { Desktop::Input("mousedown 1"); });
    script.WhenMenuIsOpen([](const Desktop::Menu& menu) {
        Desktop::Input("mousemove " + Center(menu.items[4].place));
    });
    script.WhenHighlighted(4, [] { Desktop::Input("mousemove 5 5 mouseup 1"); });
    Play();
    EXPECT_EQ(control->chosen, 0);
}

TEST_F(PopUp, TakesAChoiceByTheKeyboard) {
    Fill(5);
    control->SetCurrentItem(2);
    control->SetTabStop(true);
    script.When([this] { return active; },
                [this] {
                    returned = control->returned;
                    Desktop::Type("Tab space");
                });
    script.WhenHighlighted(1, [] { Desktop::Type("Down"); });
    script.WhenHighlighted(2, [] { Desktop::Type("Down"); });
    script.WhenHighlighted(3, [] { Desktop::Type("Return"); });
    Play();
    EXPECT_EQ(control->chosen, 4);
}

TEST_F(PopUp, GoesToTheItemWhoseBeginningIsTyped) {
    for (const char* text : {"Mackie Control", "Mackie HUI", "MCU Pro", "Été", "SAC 2K"})
        control->AppendItem(Text(text), 0);
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu&) { Desktop::Type("m c"); });
    script.WhenHighlighted(2, [] { Desktop::Type("Escape"); });
    Play();
    *returned = false;
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu&) { Desktop::Type("m a c k i e space h"); });
    script.WhenHighlighted(1, [] { Desktop::Type("x Return"); });
    Play();
    EXPECT_EQ(control->chosen, 2);
}

TEST_F(PopUp, FiftyItemsScrollWithinTheScreen) {
    Fill(50);
    control->SetCurrentItem(45);
    Click();
    script.WhenHighlighted(44, [] {
        const Desktop::Rectangle menu = Desktop::OpenMenu()->place, screen = Desktop::Screen();
        Desktop::Picture("fifty");
        EXPECT_GE(menu.y, screen.y);
        EXPECT_LE(menu.y + menu.height, screen.y + screen.height);
        EXPECT_LT(menu.width, 400) << "not in columns";
        Desktop::Type("Home");
    });
    script.WhenHighlighted(0, [] { Desktop::Type("Up"); });
    script.WhenHighlighted(49, [] { Desktop::Type("Return"); });
    Play();
    EXPECT_EQ(control->chosen, 50);
}

TEST_F(PopUp, ShowsTextsLiterallyInOneLineNoWiderThanTheScreen) {
    control->AppendItem(Text(std::string(2000, 'W')), 0);
    control->AppendItem(Text("R&D\tLab\nTwo"), 0);
    control->AppendItem(Text("High \xF0\x9D\x84\x9E"), 0);
    control->AppendItem(Text(""), 0);
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu& menu) {
        Desktop::Picture("texts");
        EXPECT_LE(menu.place.width, Desktop::Screen().width);
        EXPECT_THAT(menu.items[0].text, testing::EndsWith("…"));
        EXPECT_EQ(menu.items[1].text, "R&D Lab Two");
        EXPECT_EQ(menu.items[2].text, "High \xF0\x9D\x84\x9E");
        EXPECT_EQ(menu.items[2].place.height, menu.items[1].place.height);
        Desktop::Type("Escape");
    });
    Play();
}

TEST_F(PopUp, StaysOnTheScreenAtItsEdges) {
    Fill(20);
    control->SetCurrentItem(10);
    const Desktop::Rectangle screen = Desktop::Screen();
    for (const auto& [x, y] : {std::pair{screen.width - 280, screen.height - 120}, {0, 0}}) {
        int before = 0;
        AtControl([&, x = x, y = y] {
            before = control->OnScreen().x;
            Desktop::Input("getactivewindow windowmove " + std::to_string(x) + " " +
                           std::to_string(y));
        });
        script.When([&] { return control->OnScreen().x != before; }, [] {});
        Click();
        script.WhenMenuIsOpen([screen](const Desktop::Menu& menu) {
            EXPECT_GE(menu.place.y, 0);
            EXPECT_LE(menu.place.x + menu.place.width, screen.width);
            EXPECT_LE(menu.place.y + menu.place.height, screen.height);
            Desktop::Type("Escape");
        });
        Play();
        *returned = false;
    }
}

TEST_F(PopUp, DisabledItemsCannotBeChosen) {
    Fill(3);
    control->GetMenu().EnableItem(2, false);
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu& menu) {
        EXPECT_FALSE(menu.items[1].isEnabled);
        Desktop::Input("mousemove " + Center(menu.items[1].place) + " click 1");
        Desktop::Type("Escape");
    });
    Play();
    EXPECT_EQ(control->chosen, 0);
}

TEST_F(PopUp, ClosesWhenItsControlIsDeletedAndLeavesTheChainToTheGopher) {
    Fill(5);
    Click();
    script.WhenMenuIsOpen([&](const Desktop::Menu&) { control.reset(); });
    Play();
    EXPECT_FALSE(Desktop::OpenMenu());
    EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), &gopher);
}

TEST_F(PopUp, GivesTheChainToNobodyWhenTheFormerGopherHasGone) {
    Fill(5);
    auto former = std::make_unique<Gopher>();
    Click();
    script.WhenMenuIsOpen([&](const Desktop::Menu&) {
        former.reset();
        Desktop::Type("Down Return");
    });
    Play();
    EXPECT_EQ(control->chosen, 1);
    EXPECT_EQ(ChainOfCommand::Instance()->GetGopher(), nullptr);
}

TEST_F(PopUp, ClosesWhenItsWindowIsHidden) {
    Fill(5);
    Click();
    script.WhenMenuIsOpen([&](const Desktop::Menu&) { window->ShowHide(false); });
    Play();
    EXPECT_FALSE(Desktop::OpenMenu());
    EXPECT_EQ(control->chosen, 0);
}

TEST_F(PopUp, ClosesWhenItsWindowIsDestroyed) {
    Fill(5);
    Click();
    script.WhenMenuIsOpen([&](const Desktop::Menu&) { WindowClosedNotification(window); });
    Play();
    EXPECT_FALSE(Desktop::OpenMenu());
}

TEST_F(PopUp, AChoiceMayDeleteTheControlAndItsWindow) {
    Fill(5);
    control->then = [&] { WindowClosedNotification(window); };
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu&) { Desktop::Type("Down Return"); });
    Play();
    EXPECT_EQ(control, nullptr);
}

TEST_F(PopUp, EndsWithTheProgram) {
    Fill(5);
    Click();
    script.WhenMenuIsOpen([](const Desktop::Menu&) { NativeApplication::Shared().Terminate(); });
    NativeApplication::Shared().Run();
    EXPECT_TRUE(HasReturned());
    EXPECT_EQ(control->chosen, 0);
    control->PopUp();
    EXPECT_FALSE(Desktop::OpenMenu());
}

} // namespace
