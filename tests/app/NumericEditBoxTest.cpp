#include "app/NumericEditBox.h"

#include "UI/KeyCodes.h"
#include "UI/Window.h"

#include "tests/support/NativeInput.h"

#include <gtest/gtest.h>

namespace {

using namespace Kestrin;

class NumericEditBoxTest : public testing::Test {
protected:
    NumericEditBoxTest() { box.Init(&parent, {0, 0}, 80, 0, 127, "Group"_u); }

    bool Press(unsigned char key) {
        return box.FilterTextEditDoTextInput(nullptr, UString(), 0, key);
    }

    View parent;
    NumericEditBox box;
};

TEST_F(NumericEditBoxTest, ArrowsStepWithinTheRangeAndOthersShowNothingOutsideIt) {
    for (const auto& [key, number] : {std::pair(kKeyDown, 0), {kKeyUp, 1}, {kKeyDown, 0}}) {
        EXPECT_FALSE(Press(key));
        EXPECT_EQ(box.Get(), number);
    }
    for (const int number : {127, 128, -1})
        box.Show(number);
    Press(kKeyUp);
    EXPECT_EQ(box.Get(), 127);
    box.ActiveStateChanged(nullptr, true);
    box.Show(9);
    EXPECT_EQ(box.Get(), 127) << "not while the user edits";
}

TEST(NumericEditBoxInAWindow, ShowsTheNumberThatItAcceptedAndTakesNoOthers) {
    struct Client final : Window::WindowEventClient {
        void WindowClosedNotification(Window*) override {}
        void WindowActivationChanged(Window*, bool) override {}
    } client;
    Window* window = Window::Create(client, UString(), 200, 100, 0);
    View& root = *window->GetRootView();
    {
        NumericEditBox box;
        box.Init(&root, {0, 0}, 80, 0, 127, "Group"_u);
        window->Activate();
        EXPECT_TRUE(NativeInput::WaitUntil([&] { return root.IsViewActive(); }));
        for (const auto& [keys, shown] :
             {std::pair("0, X, 7, Return", "7"), {"Backspace, Return", "0"}}) {
            NativeInput::Click(root, {40, 12});
            NativeInput::Type(root, "Ctrl+A");
            NativeInput::Type(root, keys);
            NativeInput::Click(root, {40, 12});
            EXPECT_EQ(NativeInput::SpokenOfFocus(root),
                      std::string("SpinBox|Group|") + shown + "|focused");
        }
        NativeInput::DropText(root, {40, 12}, "4x");
        EXPECT_EQ(box.Get(), 0);
        NativeInput::DropText(root, {40, 12}, "4");
        EXPECT_NE(box.Get(), 0);
    }
    Window::DestroyWindow(window);
}

} // namespace
