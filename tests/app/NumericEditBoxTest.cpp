#include "app/NumericEditBox.h"

#include "UI/KeyCodes.h"

#include <gtest/gtest.h>

namespace {

using namespace Kestrin;

class NumericEditBoxTest : public testing::Test {
protected:
    void SetUp() override {
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
    const auto expectAfter = [this](unsigned char key, int number) {
        EXPECT_FALSE(Press(key));
        EXPECT_EQ(box.Get(), number);
    };
    expectAfter(kKeyDown, 0);
    expectAfter(kKeyUp, 1);
    expectAfter(kKeyDown, 0);
    box.Show(127);
    box.Show(128);
    box.Show(-1);
    expectAfter(kKeyUp, 127);
    box.ActiveStateChanged(nullptr, true);
    box.Show(9);
    EXPECT_EQ(box.Get(), 127) << "not while the user edits";
}

} // namespace
