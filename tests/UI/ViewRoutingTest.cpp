#include "UI/CurrentEvent.h"
#include "UI/ViewBridge.h"

#include "tests/UI/ViewTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Events as the native view hands them over, without a window system in between.

namespace {

using Kestrin::NativeKeyEvent;
using Kestrin::NativeMouseEvent;
using testing::ElementsAre;
using testing::IsEmpty;

NativeMouseEvent At(double x, double y) {
    NativeMouseEvent event;
    event.where = {x, y};
    event.clickCount = 1;
    return event;
}

NativeMouseEvent Turned(double deltaX, double deltaY) {
    NativeMouseEvent event = At(1, 1);
    event.deltaX = deltaX;
    event.deltaY = deltaY;
    return event;
}

class Routing : public testing::Test {
protected:
    Routing() {
        panel.SetRect({0, 0, 200, 100});
        button.PlaceInView(&panel, 20, 20);
        button.SetDimensions(60, 30);
        label.PlaceInView(&panel, 20, 20);
        label.SetDimensions(160, 30);
        label.takesClicks = false;
        notes.clear();
    }

    Kestrin::ViewBridge& Bridge(View& view) { return Kestrin::BridgeOf(view); }
    void Drag(View& view, double x, double y) { Bridge(view).HandleMouseDragged(At(x, y)); }
    void Press(View& view, double x, double y) { Bridge(view).HandleMouseDown(At(x, y)); }
    void Release(View& view, double x, double y) { Bridge(view).HandleMouseUp(At(x, y)); }

    std::vector<std::string> notes;
    NotingView panel{"panel", notes};
    NotingView button{"button", notes};
    NotingView label{"label", notes};
};

TEST_F(Routing, APressGoesToTheViewItselfWithItsDoubleClickAndModifiers) {
    NativeMouseEvent press = At(5, 6);
    press.clickCount = 2;
    press.modifierFlags = Kestrin::kNativeShift | Kestrin::kNativeCommand | (1u << 16);
    Bridge(button).HandleMouseDown(press);
    Release(button, 5, 6);
    EXPECT_THAT(notes, ElementsAre("button double click 5,6 mods 768", "button up"));
}

TEST_F(Routing, APressOnAViewWithoutClicksGoesToTheSiblingBeneathElseToTheParent) {
    Press(label, 10, 5);
    Drag(label, 100, 5);
    Release(label, 100, 5);
    // The drag reaches the view that got the event and the one that took the press; the release
    // ends the press although the pointer has left it.
    EXPECT_THAT(notes, ElementsAre("button click 10,5", "label track 100,5", "button track 100,5",
                                   "button up"));
    notes.clear();
    Press(label, 100, 5);
    Release(label, 100, 5);
    EXPECT_THAT(notes, ElementsAre("panel click 120,25", "panel up"));
}

TEST_F(Routing, AHiddenSiblingTakesNoPress) {
    button.ShowHide(false);
    notes.clear();
    Press(label, 10, 5);
    EXPECT_THAT(notes, ElementsAre("panel click 30,25"));
}

TEST_F(Routing, ADisabledViewSwallowsThePressButHearsTheRelease) {
    button.Enable(false);
    Press(button, 5, 5);
    Release(button, 5, 5);
    EXPECT_THAT(notes, ElementsAre("button up"));
}

TEST_F(Routing, AMoveReachesTheViewsUnderItInOrderBeforeTheirParent) {
    panel.tracksMouse = button.tracksMouse = label.tracksMouse = true;
    Bridge(label).HandleMouseMoved(At(10, 5));
    EXPECT_THAT(notes,
                ElementsAre("button inside 10,5", "label inside 10,5", "panel inside 30,25"));
    button.ShowHide(false);
    label.tracksMouse = false;
    notes.clear();
    Bridge(label).HandleMouseMoved(At(10, 5));
    EXPECT_THAT(notes, ElementsAre("panel inside 30,25"));
}

TEST_F(Routing, TheWheelRoundsAwayFromZeroAndRisesToTheViewThatWantsIt) {
    panel.tracksMouse = true;
    Bridge(button).HandleScrollWheel(Turned(0.2, -0.2));
    Bridge(button).HandleScrollWheel(Turned(0, 1));
    Bridge(button).HandleScrollWheel(Turned(-0.5, 2.5));
    EXPECT_THAT(notes, ElementsAre("panel wheel 21,21 by 1,-1", "panel wheel 21,21 by 0,3",
                                   "panel wheel 21,21 by -2,8"));
    notes.clear();
    panel.tracksMouse = false;
    Bridge(button).HandleScrollWheel(Turned(1, 1));
    EXPECT_THAT(notes, IsEmpty());
}

TEST_F(Routing, KeysHaveTheirTextModifiersAndCode) {
    const auto press = [&](std::u16string key, unsigned native, unsigned flags, std::string typed) {
        NativeKeyEvent event;
        event.charactersIgnoringModifiers = std::move(key);
        event.keyCode = native;
        event.modifierFlags = flags;
        event.characters = std::move(typed);
        Bridge(button).HandleKeyDown(event);
    };
    press(u"\xF700", 111, Kestrin::kNativeOption, "");
    press(u"\x1B", 53, Kestrin::kNativeControl, "");
    press(u"\x1B", 34, Kestrin::kNativeControl, "");
    press(u"\x7F", 51, 0, "");
    press(u"\x7F", 22, 0, "");
    press(u"\xF73E", 1, 0, "");
    press(u"\xF704", 1, 0, "");
    press(u"\r\r", 1, 0, "");
    press(u"é", 77, 0, "é");
    EXPECT_THAT(notes, ElementsAre("button key '' 2048 30", "button key '' 4096 27",
                                   "button key '' 4096 0", "button key '' 0 8", "button key '' 0 0",
                                   "button key '' 0 127", "button key '' 0 0", "button key '' 0 0",
                                   "button key 'é' 0 0"));
    EXPECT_EQ(Kestrin::gLastNativeKeyCode, 77u);
}

TEST_F(Routing, TheCurrentEventIsKnownWhileItIsHandledAndNotLonger) {
    View* during = nullptr;
    double where = 0;
    button.during = [&](const std::string&) {
        during = Kestrin::CurrentEventView();
        where = Kestrin::CurrentMouseDown()->where.x;
        Bridge(panel).HandleKeyDown(NativeKeyEvent{});
        EXPECT_EQ(Kestrin::CurrentEventView(), &button);
    };
    panel.during = [&](const std::string&) {
        EXPECT_EQ(Kestrin::CurrentEventView(), &panel);
        EXPECT_EQ(Kestrin::CurrentMouseDown(), nullptr);
    };
    Press(label, 7, 7);
    EXPECT_EQ(during, &button);
    EXPECT_EQ(where, 7);
    EXPECT_EQ(Kestrin::CurrentEventView(), nullptr);
}

TEST_F(Routing, APressThatLosesItsReleaseEndsOutsideTheControlAndWithoutIt) {
    Press(label, 10, 5);
    Bridge(label).HandlePressLost();
    EXPECT_THAT(notes, ElementsAre("button click 10,5", "button track away", "button up"));
    notes.clear();
    // Lost while the click is handled, it ends after the click and not within.
    button.during = [&](const std::string& note) {
        if (note.starts_with("button click"))
            Bridge(button).HandlePressLost();
        notes.emplace_back("handled");
    };
    Press(button, 1, 1);
    EXPECT_THAT(notes, ElementsAre("button click 1,1", "handled", "button track away", "handled",
                                   "button up", "handled"));
}

/// Does one of three kinds of harm to a view inside every hook that an event calls.
class RoutingHarm : public testing::TestWithParam<int> {
protected:
    void Harm(std::unique_ptr<NotingView>& view) {
        if (GetParam() == 0)
            view.reset();
        else if (view && GetParam() == 1)
            view->RemoveFromSuperview();
        else if (view)
            view->ShowHide(false);
    }

    std::vector<std::string> notes;
};

TEST_P(RoutingHarm, AViewMayGoInAnyOfItsHooks) {
    const std::vector<std::function<void(Kestrin::ViewBridge&)>> events = {
        [](auto& bridge) { bridge.HandleMouseDown(At(1, 1)); },
        [](auto& bridge) { bridge.HandleMouseDragged(At(1, 1)); },
        [](auto& bridge) { bridge.HandleMouseUp(At(1, 1)); },
        [](auto& bridge) { bridge.HandleMouseMoved(At(1, 1)); },
        [](auto& bridge) { bridge.HandleMouseEntered(At(1, 1)); },
        [](auto& bridge) { bridge.HandleMouseExited(At(1, 1)); },
        [](auto& bridge) { bridge.HandleScrollWheel(Turned(1, 1)); },
        [](auto& bridge) { bridge.HandleKeyDown(NativeKeyEvent{}); },
        [](auto& bridge) { bridge.HandleFirstResponderChanged(true); },
        [](auto& bridge) { bridge.HandleAccessibilityPress(); },
        [](auto& bridge) { bridge.SetHidden(true); },
    };
    for (const auto& send : events) {
        NotingView parent("parent", notes);
        auto view = std::make_unique<NotingView>("view", notes);
        auto child = std::make_unique<NotingView>("child", notes);
        for (NotingView* each : {&parent, view.get(), child.get()}) {
            each->SetRect({0, 0, 100, 100});
            each->tracksMouse = true;
        }
        view->PlaceInView(&parent, 0, 0);
        child->PlaceInView(view.get(), 0, 0);
        view->during = [&](const std::string&) { Harm(view); };
        child->during = [&](const std::string&) { Harm(view); };
        notes.clear();
        send(Kestrin::BridgeOf(*view));
        EXPECT_FALSE(notes.empty());
        EXPECT_EQ(Kestrin::CurrentEventView(), nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(DestroyedRemovedHidden, RoutingHarm, testing::Values(0, 1, 2));

TEST(RoutingLifetime, AParentMayGoBeforeItsChildren) {
    std::vector<std::string> notes;
    NotingView child("child", notes);
    {
        NotingView parent("parent", notes);
        child.PlaceInView(&parent, 5, 5);
    }
    child.MoveTo(1, 2);
    EXPECT_EQ(child.GetRect(), (Rect{1, 2, 0, 0}));
    NotingView other("other", notes);
    child.PlaceInView(&other, 3, 4);
    EXPECT_EQ(child.GetOrigin(), (Point{3, 4}));
}

} // namespace
