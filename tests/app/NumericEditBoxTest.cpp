#include "app/NumericEditBox.h"

#include "UI/KeyCodes.h"

#include <gtest/gtest.h>

namespace {

using namespace Kestrin;

class NumericEditBoxTest : public testing::Test {
protected:
    NumericEditBoxTest() {
        box.Init(&parent, {0, 0}, 80, 0, 127, UString("Group", UString::kASCII));
    }

    bool Press(unsigned char key, const char* text = "") {
        return box.FilterTextEditDoTextInput(nullptr, UString(text, UString::kASCII), 0, key);
    }

    View parent;
    NumericEditBox box;
};

TEST_F(NumericEditBoxTest, LetsThroughDigitsAndKeysThatTypeNothing) {
    EXPECT_TRUE(Press(kKeyNone, "7"));
    EXPECT_TRUE(Press(kKeyBackspace)) << "a key that edits types nothing";
    EXPECT_TRUE(Press(kKeyReturn, "\r"));
    EXPECT_TRUE(Press(kKeyEscape, "\x1B"));
    for (const char* text : {"x", "-", " "})
        EXPECT_FALSE(Press(kKeyNone, text)) << text;
}

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

} // namespace
