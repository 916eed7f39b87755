#include "app/BtnUI.h"

#include "UI/KeyCodes.h"

#include <gtest/gtest.h>

namespace {

class BtnUITest : public testing::Test, protected Handler {
protected:
    void Handle(unsigned int command) override { commands.push_back(command); }

    /// Whether the button sent its command, once, since it was last asked.
    bool Sent() { return std::exchange(commands, {}) == std::vector<unsigned int>{kCommandOk}; }

    bool Press(const char* text, unsigned char key) {
        return button.DoTextInput(UString(text, UString::kASCII), 0, key) && Sent();
    }

    std::vector<unsigned int> commands;
    BtnUI button{UString("Ok", UString::kASCII), this, kCommandOk, 100};
};

TEST_F(BtnUITest, SendsItsCommandWhenReleasedInsideAfterAPress) {
    for (const float last : {22.0F, 40.0F}) {
        button.DoClick({50, 11}, 0, false);
        button.DoTrack({50, 40}, 0);
        button.DoTrack({100, last}, 0);
        EXPECT_TRUE(commands.empty());
        button.DoMouseUp(0);
        EXPECT_EQ(Sent(), last == 22.0F) << last;
    }
    button.DoTrack({50, 11}, 0);
    button.DoMouseUp(0);
    EXPECT_FALSE(Sent()) << "a release without a press";
}

TEST_F(BtnUITest, IsPressedBySpaceAndReturnOnly) {
    EXPECT_TRUE(Press(" ", Kestrin::kKeyNone));
    EXPECT_TRUE(Press("\r", Kestrin::kKeyReturn));
    EXPECT_TRUE(Press("", Kestrin::kKeyEnter));
    EXPECT_FALSE(Press("x", Kestrin::kKeyNone));
    EXPECT_FALSE(Press("", Kestrin::kKeyEscape));
    EXPECT_TRUE(commands.empty());
}

} // namespace
