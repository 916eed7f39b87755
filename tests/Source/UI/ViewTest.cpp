#include "tests/Source/UI/ViewTestSupport.h"

namespace {

using testing::ElementsAre;

/// Fills itself.
class FilledView : public View {
public:
    explicit FilledView(const Kestrin::RGBAColor& color)
        : fColor(color) {}
    std::function<void()> duringDraw;
    bool isOpaque = false;

    bool SupportsFeature(ViewFeature feature) override {
        return feature != kViewFeatureTransparent || !isOpaque;
    }
    void DoDraw(Kestrin::DrawingContext& context) override {
        context.FillRect(GetLocalRect(), fColor);
        if (const auto call = duringDraw)
            call();
    }

private:
    Kestrin::RGBAColor fColor;
};

class Views : public ShownWindow {
protected:
    std::unique_ptr<FilledView> red{new FilledView({1, 0, 0, 1})};
    std::unique_ptr<FilledView> green{new FilledView({0, 1, 0, 1})};
};

TEST_F(Views, FramesBetweenPointsStaySharpAtTwoPixelsAPoint) {
    Place(*red, {10.5f, 10, 20, 20});
    const NativeInput::Picture picture(root, 2);
    for (const int x : {20, 21, 60, 61})
        EXPECT_EQ(picture.At(x, 40) == 0xFF0000u, x == 21 || x == 60) << x;
}

TEST_F(Views, TheOpacityOfAParentReachesTheOpaqueViewsWithin) {
    NotingView panel("panel", notes);
    green->isOpaque = true;
    Place(*green, {0, 0, 50, 50}, &panel);
    Place(*red, {0, 0, 50, 50});
    const auto isMixed = [this] {
        const std::uint32_t pixel = NativeInput::Picture(root).At(25, 25);
        return (pixel >> 16 & 0xFF) > 100 && (pixel >> 8 & 0xFF) > 100 && (pixel & 0xFF) < 100;
    };
    red->SetOpacity(0.5f);
    Place(panel, {0, 0, 50, 50}, red.get());
    EXPECT_TRUE(isMixed());
    red->SetOpacity(1);
    EXPECT_EQ(NativeInput::Picture(root).At(25, 25), 0x00FF00u);
    red->SetOpacity(0.5f);
    EXPECT_TRUE(isMixed());
}

TEST_F(Views, WhatIsHiddenOrDisabledLosesTheFocusAndTakesNone) {
    Place(right, {0, 0, 10, 10}, &left);
    const std::function<void(bool)> switches[] = {[&](bool on) { right.Enable(on); },
                                                  [&](bool on) { right.ShowHide(on); },
                                                  [&](bool on) { left.ShowHide(on); }};
    for (const auto& turn : switches) {
        right.EnableKeyFocus(true);
        notes.clear();
        turn(false);
        EXPECT_THAT(notes, testing::Contains("right no focus"));
        notes.clear();
        right.EnableKeyFocus(true);
        NativeInput::Click(right, {5, 5});
        NativeInput::Type(root, "A");
        EXPECT_THAT(notes, testing::Not(testing::Contains(testing::StartsWith("right key"))));
        EXPECT_FALSE(right.HasKeyFocus());
        turn(true);
    }
}

TEST_F(Views, TabAndClicksMoveTheFocusBetweenTheViewsThatTakeIt) {
    NotingView disabled("disabled", notes);
    Place(disabled, {60, 0, 20, 20});
    for (NotingView* each : {&left, &disabled, &right})
        each->SetTabStop(true);
    disabled.Enable(false);
    NativeInput::Type(root, "Tab, Tab");
    EXPECT_TRUE(right.HasKeyFocus());
    NativeInput::Type(root, "Shift+Backtab");
    EXPECT_TRUE(left.HasKeyFocus());
    notes.clear();
    left.EnableClickThrough(true);
    NativeInput::Click(right, {5, 5});
    NativeInput::Click(left, {5, 5});
    EXPECT_THAT(notes, ElementsAre("left no focus", "right focus", "right click 5,5", "right up",
                                   "left click 5,5", "left up"));
    notes.clear();
    right.RemoveFromSuperview();
    EXPECT_THAT(notes, ElementsAre("right no focus")) << "and none is focused instead";
}

TEST_F(Views, KeysThatTheFocusedViewRefusesReachTheWindow) {
    NativeInput::Type(root, "Escape");
    left.EnableKeyFocus(true);
    NativeInput::Type(root, "A, Ctrl+V");
    left.takesKeys = true;
    NativeInput::Type(root, "Return");
    EXPECT_THAT(notes, ElementsAre("window key '' 0 27", "left focus", "left key 'a' 0 0",
                                   "window key 'a' 0 0", "left key '' 4096 0",
                                   "window key '' 4096 0", "left key '' 0 13"));
}

TEST_F(Views, ADragFollowsThePressOutOfTheViewUnlessADialogTakesIt) {
    NativeInput::Press(left, {5, 5});
    NativeInput::Move(left, {130, 70});
    NativeInput::Release(left, {130, 70});
    EXPECT_THAT(notes, ElementsAre("left focus", "left click 5,5", "left track 130,70", "left up"));
    left.during = [&](const std::string& note) {
        if (note == "left click 5,5") {
            NativeInput::RunModalWindow();
            notes.clear();
        }
    };
    NativeInput::Press(left, {5, 5});
    EXPECT_THAT(notes, ElementsAre("left track away", "left up"));
}

TEST_F(Views, AViewMayGoWhileItIsDrawnOrItsNeighbourIs) {
    Place(*red, {0, 0, 50, 50});
    Place(*green, {10, 10, 50, 50});
    red->duringDraw = [&] {
        green.reset();
        red.reset();
    };
    root.Inval();
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return red == nullptr; }));
}

} // namespace
