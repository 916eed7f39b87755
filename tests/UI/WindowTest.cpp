#include "UI/WindowData.h"

#include "tests/UI/ViewTestSupport.h"
#include "tests/support/NativeInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Windows : public testing::Test {
protected:
    ~Windows() override {
        Window::DestroyWindow(window);
        NativeInput::Settle();
    }
    void Open(unsigned int flags = 0) {
        window = Window::Create(client, Text("Windows"), 300, 120, flags);
    }
    void Show() {
        window->ShowHide(true);
        ASSERT_TRUE(
            NativeInput::WaitUntil([this] { return window->GetRootView()->IsViewActive(); }));
    }

    std::vector<std::string> notes;
    NotingClient client{notes};
    Window* window = nullptr;
};

TEST_F(Windows, FlagsTakeTheTitleBarOrAddButtons) {
    EXPECT_EQ(Kestrin::NativeStyleOf(0), 3u);
    EXPECT_EQ(Kestrin::NativeStyleOf(1), 2u);
    EXPECT_EQ(Kestrin::NativeStyleOf(2), 11u);
    EXPECT_EQ(Kestrin::NativeStyleOf(4), 7u);
    EXPECT_EQ(Kestrin::NativeStyleOf(7), 14u);
    EXPECT_EQ(Kestrin::NativeStyleOf(0xFFF8), 3u);
}

TEST_F(Windows, AWindowIsCreatedHiddenAtItsSizeWithARootThatFillsIt) {
    Open();
    NativeInput::Settle();
    EXPECT_THAT(notes, IsEmpty());
    EXPECT_EQ(window->GetRect().width, 300);
    EXPECT_EQ(window->GetRect().height, 120);
    EXPECT_EQ(window->GetRootView()->GetRect(), (Rect{0, 0, 300, 120}));
    EXPECT_FALSE(window->GetRootView()->IsViewActive());
    Show();
    EXPECT_THAT(notes, ElementsAre("visible", "active"));
    notes.clear();
    window->ShowHide(false);
    NativeInput::Settle();
    EXPECT_THAT(notes, Contains("invisible"));
    EXPECT_THAT(notes, Contains("inactive"));
    notes.clear();
    window->Activate();
    EXPECT_THAT(notes, ElementsAre("visible"));
}

TEST_F(Windows, ActivationGoesFromOneWindowToTheOther) {
    Open();
    Show();
    std::vector<std::string> otherNotes;
    NotingClient otherClient(otherNotes);
    Window* other = Window::Create(otherClient, Text("Other"), 50, 50, 0);
    View view;
    view.PlaceInView(window->GetRootView(), 0, 0);
    view.EnableKeyFocus(true);
    notes.clear();
    other->Activate();
    ASSERT_TRUE(NativeInput::WaitUntil([&] { return other->GetRootView()->IsViewActive(); }));
    EXPECT_THAT(notes, ElementsAre("inactive"));
    EXPECT_TRUE(view.HasKeyFocus());
    EXPECT_FALSE(view.IsViewActive());
    Window::DestroyWindow(other);
}

TEST_F(Windows, AResizeReachesTheRootViewBeforeTheClient) {
    Open(2);
    Show();
    notes.clear();
    Rect rootDuring;
    client.during = [&](const std::string&) { rootDuring = window->GetRootView()->GetRect(); };
    NativeInput::ResizeWindow(*window->GetRootView(), 340, 150);
    EXPECT_THAT(notes, ElementsAre("resized"));
    EXPECT_EQ(rootDuring, (Rect{0, 0, 340, 150}));
    EXPECT_GE(client.frame.height, 150);
    client.during = nullptr;
}

TEST_F(Windows, ClosingTellsTheClientAndHidesTheWindow) {
    Open();
    Show();
    notes.clear();
    NativeInput::CloseWindow(*window->GetRootView());
    ASSERT_FALSE(notes.empty());
    EXPECT_EQ(notes.front(), "closed");
    EXPECT_THAT(notes, Contains("invisible"));
}

TEST_F(Windows, TheClientMayDestroyTheWindowInEachOfItsCalls) {
    Window::DestroyWindow(nullptr);
    for (const std::string call :
         {"closed", "active", "inactive", "visible", "invisible", "resized", "window key"}) {
        client.during = nullptr;
        Open(2);
        client.during = [&](const std::string& note) {
            if (!note.starts_with(call) || !window)
                return;
            Window::DestroyWindow(std::exchange(window, nullptr));
            NativeInput::Settle();
        };
        const std::vector<std::function<void()>> steps = {
            [&] { window->ShowHide(true); },
            [&] { NativeInput::ResizeWindow(*window->GetRootView(), 340, 150); },
            [&] { NativeInput::Key(*window->GetRootView(), Kestrin::kNativeEscape); },
            [&] { window->ShowHide(false); },
            [&] { window->ShowHide(true); },
            [&] { NativeInput::CloseWindow(*window->GetRootView()); },
        };
        for (const auto& step : steps) {
            if (window)
                step();
            NativeInput::Settle();
        }
        EXPECT_EQ(window, nullptr) << call;
    }
    client.during = nullptr;
}

TEST_F(Windows, TitlesAndToolTipsCrossAsManyBytesAsUnits) {
    Open();
    window->SetWindowTitle(Text("Größe"));
    window->GetRootView()->SetToolTip(Text("a <b> €"));
    EXPECT_EQ(NativeInput::TitleOf(*window->GetRootView()), "Grö");
    EXPECT_EQ(NativeInput::ToolTipOf(*window->GetRootView()), "a <b> ");
    window->GetRootView()->SetToolTip(UString());
    EXPECT_EQ(NativeInput::ToolTipOf(*window->GetRootView()), "");
}

} // namespace
