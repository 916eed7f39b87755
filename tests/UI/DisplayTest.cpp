#include "tests/UI/ViewTestSupport.h"
#include "tests/support/Desktop.h"
#include "tests/support/NativeInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

// What needs a real window system: a window manager, a pointer of its own, grabs.

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

std::string At(const Point& point) {
    return std::to_string(std::lround(point.x)) + " " + std::to_string(std::lround(point.y));
}

Point PointerPosition() {
    int x = 0;
    int y = 0;
    std::FILE* output = popen("xdotool getmouselocation", "r");
    EXPECT_EQ(std::fscanf(output, "x:%d y:%d", &x, &y), 2);
    pclose(output);
    return {static_cast<float>(x), static_cast<float>(y)};
}

class Display : public testing::Test {
protected:
    Display()
        : window(Window::Create(client, Text("Display"), 200, 100, 0))
        , root(*window->GetRootView()) {
        left.PlaceInView(&root, 0, 0);
        left.SetDimensions(100, 100);
        right.PlaceInView(&root, 100, 0);
        right.SetDimensions(100, 100);
        left.SetTabStop(true);
        right.SetTabStop(true);
        window->ShowHide(true);
        EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
        // The window manager puts its frame around the window after it is shown.
        EXPECT_TRUE(NativeInput::WaitUntil([this] { return window->GetRect().y > 0; }));
        EXPECT_THAT(notes, ElementsAre("visible", "active"));
        notes.clear();
    }
    ~Display() override {
        Window::DestroyWindow(window);
        NativeInput::Settle();
    }

    bool Noted(const std::string& note) {
        return NativeInput::WaitUntil([&] { return testing::Matches(Contains(note))(notes); });
    }
    void PointAt(const View& view, const Point& where) {
        Desktop::Input("mousemove " + At(view.ViewToScreen(where)));
    }

    std::vector<std::string> notes;
    NotingClient client{notes};
    NotingView left{"left", notes};
    NotingView right{"right", notes};
    Window* window;
    View& root;
};

TEST_F(Display, ViewsStandOnTheScreenWhereTheySay) {
    PointAt(right, {30, 40});
    Desktop::Input("keydown shift click 1 keyup shift");
    ASSERT_TRUE(Noted("right up"));
    EXPECT_THAT(notes, ElementsAre("right focus", "right click 30,40 mods 512", "right up"));
}

TEST_F(Display, AWindowThatIsActiveAgainHasTheFocusWhereItWas) {
    right.EnableKeyFocus(true);
    notes.clear();
    Window* other = Window::Create(client, Text("Other"), 50, 50, 0);
    other->Activate();
    ASSERT_TRUE(NativeInput::WaitUntil([&] { return other->GetRootView()->IsViewActive(); }));
    Window::DestroyWindow(other);
    ASSERT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
    EXPECT_TRUE(right.HasKeyFocus());
    EXPECT_THAT(notes, Not(Contains("right no focus")));
    notes.clear();
    Desktop::Input("key shift+Tab");
    ASSERT_TRUE(Noted("left focus"));
}

TEST_F(Display, ThePointerComesBackToWhereItWasHidden) {
    PointAt(left, {10, 10});
    ASSERT_TRUE(NativeInput::WaitUntil([&] {
        return PointerPosition() == left.ViewToScreen({10, 10});
    }));
    NativeInput::Settle();
    left.ShowMouse(false);
    left.ShowMouse(false);
    PointAt(left, {60, 60});
    left.ShowMouse(true);
    EXPECT_TRUE(NativeInput::WaitUntil([&] {
        return PointerPosition() == left.ViewToScreen({10, 10});
    }));
}

TEST_F(Display, ADragInAClickThroughViewMovesTheWindow) {
    right.EnableClickThrough(true);
    const Rect before = window->GetRect();
    PointAt(right, {30, 40});
    Desktop::Input("mousedown 1");
    ASSERT_TRUE(Noted("right click 30,40"));
    // The window manager takes the pointer at a time of its own choice, and some of them move the
    // window at the release only.
    int steps = 0;
    EXPECT_TRUE(NativeInput::WaitUntil([&] {
        Desktop::Input("mousemove_relative 5 1");
        if (++steps % 10 == 0)
            Desktop::Input("mouseup 1 mousedown 1");
        return window->GetRect().x > before.x + 20;
    }));
    Desktop::Input("mouseup 1");
    EXPECT_THAT(notes, Not(Contains("right focus")));
}

TEST_F(Display, ADialogDuringThePressKeepsItFromActingWithRealGrabs) {
    left.EnableKeyFocus(true);
    left.during = [&](const std::string& note) {
        if (note == "left no focus") {
            Desktop::Input("mouseup 1");
            NativeInput::RunModalWindow();
            notes.emplace_back("answered");
        }
    };
    notes.clear();
    PointAt(right, {30, 40});
    Desktop::Input("mousedown 1");
    ASSERT_TRUE(Noted("answered")) << testing::PrintToString(notes);
    ASSERT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
    EXPECT_THAT(notes, Not(Contains("right click 30,40")));
    left.during = nullptr;
    Desktop::Input("click 1");
    ASSERT_TRUE(Noted("right up"));
    EXPECT_THAT(notes, Contains(testing::EndsWith("click 30,40")));
}

TEST_F(Display, TheCloseButtonOfTheWindowManagerClosesAndMayDestroy) {
    client.during = [&](const std::string& note) {
        if (note == "closed")
            Window::DestroyWindow(std::exchange(window, nullptr));
    };
    Desktop::Input("key alt+F4");
    EXPECT_TRUE(NativeInput::WaitUntil([this] { return window == nullptr; }));
}

} // namespace
