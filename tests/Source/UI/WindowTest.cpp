#include "tests/Source/UI/ViewTestSupport.h"

namespace {

using testing::ElementsAre;

using Windows = ShownWindow;

TEST_F(Windows, OneOpensHiddenAndTheActiveStateGoesFromOneToTheOther) {
    left.EnableKeyFocus(true);
    notes.clear();
    std::vector<std::string> otherNotes;
    NotingClient otherClient(otherNotes);
    Window* other = Window::Create(otherClient, Text("Other"), 300, 120, 0);
    NativeInput::Settle();
    EXPECT_TRUE(otherNotes.empty());
    EXPECT_EQ(other->GetRootView()->GetRect(), (Rect{0, 0, 300, 120}));
    other->Activate();
    ASSERT_TRUE(NativeInput::WaitUntil([&] { return other->GetRootView()->IsViewActive(); }));
    EXPECT_FALSE(left.IsViewActive());
    other->ShowHide(false);
    NativeInput::Settle();
    EXPECT_THAT(otherNotes, testing::UnorderedElementsAre("window visible", "window active",
                                                          "window invisible", "window inactive"));
    Window::DestroyWindow(other);
    window->Activate();
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return left.IsViewActive(); }));
    EXPECT_TRUE(left.HasKeyFocus());
    EXPECT_THAT(notes, ElementsAre("window inactive", "window active"));
}

TEST_F(Windows, TheTitleIsShownLiterally) {
    for (const std::string title : {"[*]", "a[*] & [*][*]b"}) {
        window->SetWindowTitle(Text(title));
        EXPECT_EQ(NativeInput::ShownTitle(root), title);
    }
}

TEST_F(Windows, AViewOrTheWindowMayGoInsideEachCall) {
    const Point at{5, 5};
    const Point further{6, 6};
    Window* doomed = nullptr;
    std::unique_ptr<NotingView> view;
    const std::function<void()> harms[] = {
        [&] {
            view.reset();
            Window::DestroyWindow(std::exchange(doomed, nullptr));
            NativeInput::Settle();
        },
        [&] { view.reset(); },
        [&] { view->RemoveFromSuperview(); },
        [&] { view->ShowHide(false); },
    };
    const std::function<void()> steps[] = {
        [&] { doomed->ShowHide(true); },
        [&] { NativeInput::ResizeWindow(*view, 340, 150); },
        [&] { NativeInput::Move(*view, at); },
        [&] { NativeInput::Press(*view, at); },
        [&] { NativeInput::Move(*view, further); },
        [&] { NativeInput::Type(*view, "Escape"); },
        [&] { NativeInput::Release(*view, at); },
        [&] { view->RemoveFromSuperview(); },
        [&] { doomed->ShowHide(false); },
        [&] { doomed->ShowHide(true); },
        [&] { NativeInput::CloseWindow(*doomed->GetRootView()); },
    };
    for (const auto& harm : harms) {
        for (const std::string call :
             {" click", "view track", "view inside", "view up", "view focus", "view no focus",
              "view key", "window closed", "window active", "window inactive", "window visible",
              "window invisible", "window resized", "window key"}) {
            NotingClient doomedClient(notes);
            doomed = Window::Create(doomedClient, Text("Doomed"), 300, 120, 2);
            view = std::make_unique<NotingView>("view", notes);
            view->tracksMouse = true;
            Place(*view, {0, 0, 100, 100}, doomed->GetRootView());
            bool isDone = false;
            view->during = doomedClient.during = [&](const std::string& note) {
                if (note.find(call) != std::string::npos && !std::exchange(isDone, true))
                    harm();
            };
            for (const auto& step : steps) {
                if (!isDone)
                    step();
                NativeInput::Settle();
            }
            EXPECT_TRUE(isDone) << call;
            view.reset();
            if (doomed)
                Window::DestroyWindow(doomed);
        }
    }
}

} // namespace
