#include "tests/UI/ViewTestSupport.h"
#include "tests/support/NativeInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

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

/// A shown, active window of 200 by 100.
class Views : public testing::Test {
protected:
    Views()
        : window(Window::Create(client, Text("Views"), 200, 100, 0))
        , root(*window->GetRootView()) {
        window->ShowHide(true);
        EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
        notes.clear();
    }
    ~Views() override {
        Window::DestroyWindow(window);
        NativeInput::Settle();
    }

    void Place(View& view, const Rect& rect, View* parent = nullptr) {
        view.PlaceInView(parent ? parent : &root, rect.x, rect.y);
        view.SetDimensions(rect.width, rect.height);
        NativeInput::Settle();
        notes.clear();
    }

    std::vector<std::string> notes;
    NotingClient client{notes};
    Window* window;
    View& root;
};

TEST_F(Views, OnlyTheOriginOfANegativeFrameIsSetRight) {
    FilledView view(kRed);
    Place(view, {0, 0, 50, 50});
    view.SetRect({50, 40, -10, 20});
    EXPECT_EQ(view.GetRect(), (Rect{40, 40, -10, 20}));
    EXPECT_TRUE(view.IsVisible());
    const NativeInput::Picture picture(root);
    EXPECT_EQ(picture.At(45, 45), picture.At(190, 90));
    // Nor does the toolkit come to harm by what no screen has room for.
    view.SetRect({-1e30F, std::nanf(""), 1e30F, 1e30F});
    NativeInput::Settle();
    EXPECT_EQ(view.GetRect().x, -1e30F);
}

TEST_F(Views, ConversionsAreZeroWithoutAWindowAndAddUpWithin) {
    FilledView outer(kRed);
    FilledView inner(kGreen);
    inner.PlaceInView(&outer, 5, 6);
    EXPECT_EQ(inner.ViewToWindow({1, 1}), (Point{0, 0}));
    EXPECT_EQ(inner.ViewToScreen({1, 1}), (Point{0, 0}));
    Place(outer, {30, 20, 100, 60});
    EXPECT_EQ(inner.ViewToWindow({1, 1}), (Point{36, 27}));
    const Rect content = window->GetRect();
    EXPECT_EQ(inner.ViewToScreen({1, 1}), (Point{content.x + 36, content.y + 27}));
    outer.RemoveFromSuperview();
    EXPECT_EQ(inner.ViewToWindow({1, 1}), (Point{0, 0}));
}

TEST_F(Views, ADrawRepaintsOnlyWhatWasInvalidated) {
    FilledView left(kRed);
    FilledView right(kGreen);
    Place(left, {0, 0, 50, 50});
    Place(right, {100, 0, 50, 50});
    ASSERT_TRUE(NativeInput::WaitUntil([&] { return left.draws && right.draws; }));
    const int before = right.draws;
    const int drawn = left.draws;
    left.Inval();
    left.Inval();
    EXPECT_EQ(left.draws, drawn);
    NativeInput::Settle();
    EXPECT_EQ(left.draws, drawn + 1);
    EXPECT_EQ(right.draws, before);
    left.DrawNow();
    EXPECT_EQ(left.draws, drawn + 2);
    left.SetRect({0, 0, 50, 50});
    NativeInput::Settle();
    EXPECT_EQ(left.draws, drawn + 2);
}

TEST_F(Views, MovingAndResizingRedrawTheParent) {
    FilledView parent(kRed);
    FilledView child(kGreen);
    Place(parent, {0, 0, 100, 100});
    Place(child, {10, 10, 20, 20}, &parent);
    const int drawn = parent.draws;
    child.MoveTo(12, 10);
    NativeInput::Settle();
    EXPECT_EQ(parent.draws, drawn + 1);
    child.SetDimensions(22, 20);
    NativeInput::Settle();
    EXPECT_EQ(parent.draws, drawn + 2);
}

TEST_F(Views, OpacityMultipliesThroughTheParents) {
    FilledView back(kRed);
    View middle;
    FilledView front(kGreen);
    Place(back, {0, 0, 40, 40});
    Place(middle, {0, 0, 40, 40});
    Place(front, {0, 0, 40, 40}, &middle);
    EXPECT_EQ(NativeInput::Picture(root).At(20, 20), 0x00FF00u);
    middle.SetOpacity(0.5f);
    front.SetOpacity(0.5f);
    const std::uint32_t mixed = NativeInput::Picture(root).At(20, 20);
    EXPECT_NEAR(mixed >> 16, 0xBF, 2);
    EXPECT_NEAR((mixed >> 8) & 0xFF, 0x40, 2);
}

TEST_F(Views, FramesBetweenPointsStaySharpAtTwoPixelsAPoint) {
    FilledView view(kRed);
    Place(view, {10.5f, 10, 20, 20});
    const NativeInput::Picture picture(root, 2);
    EXPECT_NE(picture.At(20, 40), 0xFF0000u);
    EXPECT_EQ(picture.At(21, 40), 0xFF0000u);
    EXPECT_EQ(picture.At(60, 40), 0xFF0000u);
    EXPECT_NE(picture.At(61, 40), 0xFF0000u);
}

TEST_F(Views, HidingTellsTheViewAndAllShownWithin) {
    NotingView outer("outer", notes);
    NotingView shown("shown", notes);
    NotingView hidden("hidden", notes);
    Place(outer, {0, 0, 100, 100});
    Place(shown, {0, 0, 10, 10}, &outer);
    Place(hidden, {0, 0, 10, 10}, &outer);
    hidden.ShowHide(false);
    notes.clear();
    outer.ShowHide(false);
    EXPECT_THAT(notes, ElementsAre("outer visibility", "shown visibility"));
    EXPECT_FALSE(shown.IsVisible());
    notes.clear();
    outer.ShowHide(false);
    shown.ShowHide(false);
    EXPECT_THAT(notes, IsEmpty());
    shown.ShowHide(true);
    outer.ShowHide(true);
    EXPECT_TRUE(shown.IsVisible());
    EXPECT_FALSE(hidden.IsVisible());
}

TEST_F(Views, AViewShownBeforeItIsPlacedIsNoWindowOfItsOwn) {
    FilledView view(kRed);
    view.SetRect({0, 0, 20, 20});
    view.ShowHide(true);
    NativeInput::Settle();
    EXPECT_EQ(view.draws, 0);
    view.ShowHide(false);
    Place(view, {0, 0, 20, 20});
    EXPECT_EQ(view.draws, 0);
    view.ShowHide(true);
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return view.draws > 0; }));
}

TEST_F(Views, NoViewHasTheFocusUntilTabOrAClickGivesIt) {
    NotingView first("first", notes);
    NotingView plain("plain", notes);
    NotingView second("second", notes);
    Place(first, {0, 0, 20, 20});
    Place(plain, {30, 0, 20, 20});
    Place(second, {60, 0, 20, 20});
    first.SetTabStop(true);
    second.SetTabStop(true);
    EXPECT_THAT(notes, IsEmpty());
    NativeInput::Key(root, Kestrin::kNativeTab);
    EXPECT_TRUE(first.HasKeyFocus());
    NativeInput::Key(root, Kestrin::kNativeTab);
    EXPECT_TRUE(second.HasKeyFocus());
    NativeInput::Key(root, Kestrin::kNativeBackTab, Kestrin::kNativeShift);
    EXPECT_TRUE(first.HasKeyFocus());
    notes.clear();
    NativeInput::Click(plain, {5, 5});
    EXPECT_THAT(notes, ElementsAre("first no focus", "plain focus", "plain click 5,5", "plain up"));
    notes.clear();
    second.EnableClickThrough(true);
    NativeInput::Click(second, {5, 5});
    EXPECT_THAT(notes, ElementsAre("second click 5,5", "second up"));
}

TEST_F(Views, ADisabledViewIsNoTabStop) {
    NotingView first("first", notes);
    NotingView second("second", notes);
    Place(first, {0, 0, 20, 20});
    Place(second, {60, 0, 20, 20});
    first.SetTabStop(true);
    second.SetTabStop(true);
    first.Enable(false);
    NativeInput::Key(root, Kestrin::kNativeTab);
    EXPECT_TRUE(second.HasKeyFocus());
    first.Enable(true);
    second.EnableKeyFocus(false);
    EXPECT_TRUE(first.HasKeyFocus());
}

TEST_F(Views, KeysThatTheFocusedViewRefusesReachTheWindow) {
    NotingView view("view", notes);
    Place(view, {0, 0, 20, 20});
    NativeInput::Key(root, Kestrin::kNativeEscape);
    EXPECT_THAT(notes, ElementsAre("window key '' 0 27"));
    view.EnableKeyFocus(true);
    notes.clear();
    NativeInput::Key(root, Kestrin::kNativeReturn);
    NativeInput::Key(root, u'a');
    NativeInput::Key(root, u'v', Kestrin::kNativeControl);
    EXPECT_THAT(notes,
                ElementsAre("view key '' 0 13", "window key '' 0 13", "view key 'a' 0 0",
                            "window key 'a' 0 0", "view key '' 4096 0", "window key '' 4096 0"));
    notes.clear();
    view.takesKeys = true;
    NativeInput::Key(root, Kestrin::kNativeReturn);
    EXPECT_THAT(notes, ElementsAre("view key '' 0 13"));
}

TEST_F(Views, RemovingTheFocusedViewLeavesNoneFocused) {
    NotingView view("view", notes);
    NotingView other("other", notes);
    Place(view, {0, 0, 20, 20});
    Place(other, {30, 0, 20, 20});
    other.SetTabStop(true);
    view.EnableKeyFocus(true);
    notes.clear();
    view.RemoveFromSuperview();
    EXPECT_THAT(notes, ElementsAre("view no focus"));
    EXPECT_FALSE(other.HasKeyFocus());
}

TEST_F(Views, ADragFollowsThePressOutOfTheView) {
    NotingView view("view", notes);
    Place(view, {50, 50, 20, 20});
    NativeInput::Press(view, {5, 5});
    NativeInput::Move(view, {100, -20});
    NativeInput::Release(view, {100, -20});
    EXPECT_THAT(notes,
                ElementsAre("view focus", "view click 5,5", "view track 100,-20", "view up"));
    notes.clear();
    NativeInput::DoubleClick(view, {6, 6});
    EXPECT_THAT(notes, Contains("view double click 6,6"));
    notes.clear();
    NativeInput::Move(view, {7, 7});
    EXPECT_THAT(notes, IsEmpty());
}

TEST_F(Views, ThePointerEntersMovesAndLeavesWhereItIsTracked) {
    NotingView view("view", notes);
    view.tracksMouse = true;
    Place(view, {50, 50, 20, 20});
    NativeInput::Move(root, {10, 10});
    NativeInput::Move(view, {3, 4});
    NativeInput::Move(root, {12, 10});
    ASSERT_FALSE(notes.empty());
    EXPECT_EQ(notes.front(), "view inside 3,4");
    EXPECT_THAT(notes.back(), testing::StartsWith("view exited"));
    notes.clear();
    NativeInput::Wheel(view, {3, 4}, 0, -1);
    EXPECT_THAT(notes, Contains("view wheel 3,4 by 0,-3"));
}

TEST_F(Views, ADialogThatThePressOpensByMovingTheFocusKeepsThePressFromActing) {
    NotingView field("field", notes);
    NotingView button("button", notes);
    Place(field, {0, 0, 50, 20});
    Place(button, {60, 0, 50, 20});
    field.EnableKeyFocus(true);
    notes.clear();
    field.during = [](const std::string& note) {
        if (note == "field no focus")
            NativeInput::RunModalWindow();
    };
    NativeInput::Press(button, {5, 5});
    NativeInput::Release(button, {5, 5});
    EXPECT_THAT(notes, Not(Contains("button click 5,5")));
    EXPECT_THAT(notes, Not(Contains("button up")));
    notes.clear();
    // The next press acts again.
    NativeInput::Click(button, {5, 5});
    EXPECT_THAT(notes, ElementsAre("button click 5,5", "button up"));
}

TEST_F(Views, ADialogThatAClickOpensLeavesTheControlReleased) {
    NotingView button("button", notes);
    Place(button, {60, 0, 50, 20});
    button.during = [&](const std::string& note) {
        if (note == "button click 5,5")
            NativeInput::RunModalWindow();
    };
    NativeInput::Press(button, {5, 5});
    EXPECT_EQ(notes.at(notes.size() - 2), "button track away");
    EXPECT_EQ(notes.back(), "button up");
}

TEST_F(Views, ScreenReadersHearTheControlAndPressIt) {
    NotingView button("button", notes);
    Place(button, {0, 0, 50, 20});
    EXPECT_FALSE(NativeInput::PressByScreenReader(button));
    button.SetAccessibility(Kestrin::AccessibleRole::kPopUpButton, Text("Größe"));
    button.SetAccessibleValue(Text("medium"));
    button.EnableKeyFocus(true);
    notes.clear();
    const NativeInput::Spoken spoken = NativeInput::SpokenOf(button);
    EXPECT_EQ(spoken.role, "menu button");
    EXPECT_EQ(spoken.name, "Größe");
    EXPECT_EQ(spoken.value, "medium");
    EXPECT_TRUE(spoken.focused);
    EXPECT_TRUE(NativeInput::PressByScreenReader(button));
    EXPECT_THAT(notes, ElementsAre("button key ' ' 0 0"));
}

TEST_F(Views, AViewMayGoWhileItIsDrawnOrItsNeighbourIs) {
    auto below = std::make_unique<FilledView>(kRed);
    auto above = std::make_unique<FilledView>(kGreen);
    Place(*below, {0, 0, 50, 50});
    Place(*above, {10, 10, 50, 50});
    below->duringDraw = [&] { above.reset(); };
    root.Inval();
    NativeInput::Settle();
    EXPECT_EQ(above, nullptr);
    below->duringDraw = [&] { below.reset(); };
    root.Inval();
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return below == nullptr; }));
}

TEST_F(Views, TheWindowMayGoInsideEachHookOfItsViews) {
    for (const std::string hook : {"click", "track", "up", "focus", "no focus", "key"}) {
        Window* doomed = Window::Create(client, Text("Doomed"), 100, 100, 0);
        auto view = std::make_unique<NotingView>("view", notes);
        view->PlaceInView(doomed->GetRootView(), 0, 0);
        view->SetDimensions(100, 100);
        doomed->ShowHide(true);
        ASSERT_TRUE(NativeInput::WaitUntil([&] { return view->IsViewActive(); }));
        view->during = [&](const std::string& note) {
            if (!note.starts_with("view " + hook))
                return;
            view.reset();
            Window::DestroyWindow(std::exchange(doomed, nullptr));
            NativeInput::Settle();
        };
        const std::vector<std::function<void()>> steps = {
            [&] { NativeInput::Press(*view, {5, 5}); },
            [&] { NativeInput::Move(*view, {6, 6}); },
            [&] { NativeInput::Key(*view, u'a'); },
            [&] { NativeInput::Release(*view, {6, 6}); },
            [&] { view->RemoveFromSuperview(); },
        };
        for (const auto& step : steps) {
            if (view)
                step();
        }
        EXPECT_EQ(doomed, nullptr) << hook;
        Window::DestroyWindow(doomed);
    }
}

} // namespace
