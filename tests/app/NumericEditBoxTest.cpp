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
    EXPECT_TRUE(Press(kKeyEnter, "\x03"));
    EXPECT_TRUE(Press(kKeyEscape, "\x1B"));
    EXPECT_FALSE(Press(kKeyNone, "x"));
    EXPECT_FALSE(Press(kKeyNone, "-"));
    EXPECT_FALSE(Press(kKeyNone, " "));
}

TEST_F(NumericEditBoxTest, ArrowsStepWithinTheRange) {
    EXPECT_FALSE(Press(kKeyDown));
    EXPECT_EQ(box.Get(), 0);
    EXPECT_FALSE(Press(kKeyUp));
    EXPECT_EQ(box.Get(), 1);
    EXPECT_FALSE(Press(kKeyDown));
    EXPECT_EQ(box.Get(), 0);

    box.Show(127);
    EXPECT_FALSE(Press(kKeyUp));
    EXPECT_EQ(box.Get(), 127);
}

TEST_F(NumericEditBoxTest, ShowsOnlyWhatIsInRangeAndNotWhileEditing) {
    box.Show(5);
    EXPECT_EQ(box.Get(), 5);
    box.Show(128);
    box.Show(-1);
    EXPECT_EQ(box.Get(), 5);

    box.ActiveStateChanged(nullptr, true);
    box.Show(9);
    EXPECT_EQ(box.Get(), 5);
    box.ActiveStateChanged(nullptr, false);
    box.Show(9);
    EXPECT_EQ(box.Get(), 9);
}

TEST_F(NumericEditBoxTest, IsTransparentAndNothingElse) {
    EXPECT_TRUE(box.SupportsFeature(kViewFeatureTransparent));
    EXPECT_FALSE(box.SupportsFeature(kViewFeatureClicks));
    EXPECT_FALSE(box.SupportsFeature(kViewFeatureMouseTracking));
}

} // namespace
