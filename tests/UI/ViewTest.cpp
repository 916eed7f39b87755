#include "tests/UI/ViewTestSupport.h"

namespace {

using testing::ElementsAre;

constexpr Kestrin::RGBAColor kRed{1, 0, 0, 1};
constexpr Kestrin::RGBAColor kGreen{0, 1, 0, 1};

/// Fills itself and counts how often.
class FilledView : public View {
public:
    explicit FilledView(const Kestrin::RGBAColor& color)
        : fColor(color) {}
    int draws = 0;
    std::function<void()> duringDraw;

    void DoDraw(Kestrin::DrawingContext& context) override {
        ++draws;
        context.FillRect(GetLocalRect(), fColor);
        if (const auto call = duringDraw)
            call();
    }

private:
    Kestrin::RGBAColor fColor;
};

class Views : public ShownWindow {
protected:
    std::unique_ptr<FilledView> red = std::make_unique<FilledView>(kRed);
    std::unique_ptr<FilledView> green = std::make_unique<FilledView>(kGreen);
};

TEST_F(Views, OnlyTheOriginOfANegativeFrameIsSetRight) {
    Place(*red, {0, 0, 50, 50});
    red->SetRect({50, 40, -10, 20});
    EXPECT_EQ(red->GetRect(), (Rect{40, 40, -10, 20}));
    EXPECT_TRUE(red->IsVisible());
    EXPECT_NE(NativeInput::Picture(root).At(45, 45), 0xFF0000u);
    // Nor does the toolkit come to harm by what no screen has room for.
    red->SetRect({-1e30F, std::nanf(""), 1e30F, 1e30F});
    NativeInput::Settle();
    EXPECT_EQ(red->GetRect().x, -1e30F);
}

TEST_F(Views, ConversionsAreZeroWithoutAWindowAndAddUpWithin) {
    green->PlaceInView(red.get(), 5, 6);
    EXPECT_EQ(green->ViewToWindow({1, 1}), (Point{0, 0}));
    EXPECT_EQ(green->ViewToScreen({1, 1}), (Point{0, 0}));
    Place(*red, {30, 20, 100, 60});
    EXPECT_EQ(green->ViewToWindow({1, 1}), (Point{36, 27}));
    const Rect content = window->GetRect();
    EXPECT_EQ(green->ViewToScreen({1, 1}), (Point{content.x + 36, content.y + 27}));
    red.reset();
    EXPECT_EQ(green->ViewToWindow({1, 1}), (Point{0, 0}));
}

TEST_F(Views, ADrawRepaintsOnlyWhatWasInvalidatedAndAMoveTheParent) {
    FilledView parent(kRed);
    Place(parent, {0, 0, 100, 100});
    Place(*red, {10, 10, 20, 20}, &parent);
    Place(*green, {60, 10, 20, 20}, &parent);
    ASSERT_TRUE(NativeInput::WaitUntil([&] { return green->draws > 0; }));
    const int reds = red->draws;
    const int greens = green->draws;
    red->Inval();
    red->Inval();
    EXPECT_EQ(red->draws, reds);
    NativeInput::Settle();
    EXPECT_EQ(red->draws, reds + 1);
    red->DrawNow();
    EXPECT_EQ(red->draws, reds + 2);
    red->SetRect({10, 10, 20, 20});
    NativeInput::Settle();
    EXPECT_EQ(red->draws, reds + 2);
    EXPECT_EQ(green->draws, greens);
    const int parents = parent.draws;
    red->MoveTo(12, 10);
    NativeInput::Settle();
    EXPECT_EQ(parent.draws, parents + 1);
    red->SetDimensions(22, 20);
    NativeInput::Settle();
    EXPECT_EQ(parent.draws, parents + 2);
}

TEST_F(Views, OpacityMultipliesThroughTheParents) {
    View middle;
    Place(*red, {0, 0, 40, 40});
    Place(middle, {0, 0, 40, 40});
    Place(*green, {0, 0, 40, 40}, &middle);
    EXPECT_EQ(NativeInput::Picture(root).At(20, 20), 0x00FF00u);
    middle.SetOpacity(0.5f);
    green->SetOpacity(0.5f);
    const std::uint32_t mixed = NativeInput::Picture(root).At(20, 20);
    EXPECT_NEAR(mixed >> 16, 0xBF, 2);
    EXPECT_NEAR((mixed >> 8) & 0xFF, 0x40, 2);
}

TEST_F(Views, FramesBetweenPointsStaySharpAtTwoPixelsAPoint) {
    Place(*red, {10.5f, 10, 20, 20});
    const NativeInput::Picture picture(root, 2);
    EXPECT_NE(picture.At(20, 40), 0xFF0000u);
    EXPECT_EQ(picture.At(21, 40), 0xFF0000u);
    EXPECT_EQ(picture.At(60, 40), 0xFF0000u);
    EXPECT_NE(picture.At(61, 40), 0xFF0000u);
}

TEST_F(Views, HidingTellsTheViewAndAllShownWithin) {
    NotingView hidden("hidden", notes);
    Place(right, {0, 0, 10, 10}, &left);
    Place(hidden, {0, 0, 10, 10}, &left);
    hidden.ShowHide(false);
    notes.clear();
    left.ShowHide(false);
    left.ShowHide(false);
    right.ShowHide(false);
    EXPECT_THAT(notes, ElementsAre("left visibility", "right visibility"));
    right.ShowHide(true);
    EXPECT_FALSE(right.IsVisible());
    left.ShowHide(true);
    EXPECT_TRUE(right.IsVisible());
    EXPECT_FALSE(hidden.IsVisible());
}

TEST_F(Views, AViewShownBeforeItIsPlacedIsNoWindowOfItsOwn) {
    red->SetRect({0, 0, 20, 20});
    red->ShowHide(true);
    NativeInput::Settle();
    EXPECT_EQ(red->draws, 0);
    Place(*red, {0, 0, 20, 20});
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return red->draws > 0; }));
}

TEST_F(Views, TabAndClicksMoveTheFocusBetweenTheViewsThatTakeIt) {
    NotingView disabled("disabled", notes);
    Place(disabled, {60, 0, 20, 20});
    for (NotingView* each : {&left, &disabled, &right})
        each->SetTabStop(true);
    disabled.Enable(false);
    NativeInput::Key(root, Kestrin::kNativeTab);
    NativeInput::Key(root, Kestrin::kNativeTab);
    EXPECT_TRUE(right.HasKeyFocus());
    NativeInput::Key(root, Kestrin::kNativeBackTab, Kestrin::kNativeShift);
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
    NativeInput::Key(root, Kestrin::kNativeEscape);
    left.EnableKeyFocus(true);
    NativeInput::Key(root, u'a');
    NativeInput::Key(root, u'v', Kestrin::kNativeControl);
    left.takesKeys = true;
    NativeInput::Key(root, Kestrin::kNativeReturn);
    EXPECT_THAT(notes, ElementsAre("window key '' 0 27", "left focus", "left key 'a' 0 0",
                                   "window key 'a' 0 0", "left key '' 4096 0",
                                   "window key '' 4096 0", "left key '' 0 13"));
}

TEST_F(Views, ADragFollowsThePressOutOfTheView) {
    NativeInput::Press(left, {5, 5});
    NativeInput::Move(left, {130, 70});
    NativeInput::Release(left, {130, 70});
    EXPECT_THAT(notes, ElementsAre("left focus", "left click 5,5", "left track 130,70", "left up"));
}

TEST_F(Views, ADialogThatAClickOpensLeavesTheControlReleased) {
    left.during = [&](const std::string& note) {
        if (note == "left click 5,5")
            NativeInput::RunModalWindow();
    };
    NativeInput::Press(left, {5, 5});
    EXPECT_EQ(notes.at(notes.size() - 2), "left track away");
    EXPECT_EQ(notes.back(), "left up");
}

TEST_F(Views, ScreenReadersHearTheControlAndPressIt) {
    EXPECT_FALSE(NativeInput::PressByScreenReader(left));
    left.SetAccessibility(Kestrin::AccessibleRole::kPopUpButton, Text("Größe"));
    left.SetAccessibleValue(Text("medium"));
    left.EnableKeyFocus(true);
    notes.clear();
    const NativeInput::Spoken spoken = NativeInput::SpokenOfFocus(root);
    EXPECT_EQ(spoken.role, "combo box");
    EXPECT_EQ(spoken.name, "Größe medium");
    EXPECT_EQ(spoken.value, "medium");
    EXPECT_TRUE(spoken.focused);
    EXPECT_TRUE(NativeInput::PressByScreenReader(left));
    EXPECT_THAT(notes, ElementsAre("left key ' ' 0 0"));
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
