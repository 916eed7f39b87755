#include "UI/Internal/ViewBridge.h"

#include "tests/Source/UI/ViewTestSupport.h"

// Events as the native view hands them over, without a window system in between.

namespace {

using Kestrin::BridgeOf;
using Kestrin::NativeMouseEvent;
using testing::ElementsAre;

NativeMouseEvent At(double x, double y, unsigned flags = 0, int clicks = 1) {
    return {{x, y}, flags, clicks};
}

/// A panel with a button, and above that a label that takes no clicks and reaches further.
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

    void Press(View& view, double x, double y) { BridgeOf(view).HandleMouseDown(At(x, y)); }
    void Release(View& view, double x, double y) { BridgeOf(view).HandleMouseUp(At(x, y)); }

    std::vector<std::string> notes;
    NotingView panel{"panel", notes};
    NotingView button{"button", notes};
    NotingView label{"label", notes};
};

TEST_F(Routing, APressGoesToTheViewItselfElseToTheSiblingBeneathElseToTheParent) {
    const unsigned unknownBit = 1u << 16;
    BridgeOf(button).HandleMouseDown(
        At(5, 6, Kestrin::kNativeShift | Kestrin::kNativeCommand | unknownBit, 2));
    Release(button, 5, 6);
    Press(label, 10, 5);
    BridgeOf(label).HandleMouseDragged(At(100, 5));
    Release(label, 100, 5);
    Press(label, 100, 5);
    Release(label, 100, 5);
    // The drag reaches the view that got the event and the one that took the press; the release
    // ends the press although the pointer has left it.
    EXPECT_THAT(notes, ElementsAre("button double click 5,6 mods 768", "button up",
                                   "button click 10,5", "label track 100,5", "button track 100,5",
                                   "button up", "panel click 120,25", "panel up"));
}

TEST_F(Routing, AHiddenViewTakesNoPressAndADisabledOneOnlyTheRelease) {
    button.Enable(false);
    Press(button, 5, 5);
    Release(button, 5, 5);
    BridgeOf(button).HandleKeyDown({"a", u"a"});
    EXPECT_THAT(notes, ElementsAre("button up"));
    button.ShowHide(false);
    notes.clear();
    Press(label, 10, 5);
    EXPECT_THAT(notes, ElementsAre("panel click 30,25"));
}

TEST_F(Routing, AViewBeneathAnotherHearsThatThePointerLeavesIt) {
    button.tracksMouse = true;
    BridgeOf(label).HandleMouseEntered(At(10, 5));
    BridgeOf(panel).HandleMouseMoved(At(150, 80));
    BridgeOf(label).HandleMouseMoved(At(10, 5));
    BridgeOf(panel).HandleMouseExited(At(30, 25)); // onto another window
    EXPECT_THAT(notes, ElementsAre("button inside 10,5", "button exited 130,60",
                                   "button inside 10,5", "button exited 10,5"));
}

TEST_F(Routing, AViewThatLeavesDuringAWalkHidesNoOtherFromIt) {
    button.tracksMouse = label.tracksMouse = true;
    button.during = [this](const std::string&) { button.RemoveFromSuperview(); };
    BridgeOf(panel).HandleMouseMoved(At(30, 25));
    EXPECT_THAT(notes, ElementsAre("button inside 10,5", "label inside 10,5"));
}

TEST_F(Routing, APressThatWasHandedOnAndLosesItsReleaseEndsOutsideTheControl) {
    Press(label, 10, 5);
    BridgeOf(label).HandlePressLost();
    EXPECT_THAT(notes, ElementsAre("button click 10,5", "button track away", "button up"));
}

} // namespace
