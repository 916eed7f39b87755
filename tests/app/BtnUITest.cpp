#include "app/BtnUI.h"

#include "UI/KeyCodes.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class BtnUITest : public testing::Test, protected Handler {
protected:
    void Handle(unsigned int command) override { sent += command == kCommandOk ? 1 : 100; }

    int sent = 0;
    BtnUI button{"Ok"_u, this, kCommandOk, 100};
};

TEST_F(BtnUITest, SendsItsCommandWhenReleasedInsideAfterAPress) {
    for (const float last : {22.0F, 40.0F}) {
        button.DoClick({50, 11}, 0, false);
        button.DoTrack({50, 40}, 0);
        button.DoTrack({100, last}, 0);
        button.DoMouseUp(0);
        EXPECT_EQ(std::exchange(sent, 0), last == 22.0F) << last;
    }
    button.DoTrack({50, 11}, 0);
    button.DoMouseUp(0);
    EXPECT_EQ(sent, 0) << "a release without a press";
}

TEST_F(BtnUITest, MayBeDestroyedByItsCommand) {
    struct Destroyer final : Handler {
        void Handle(unsigned int) override { button.reset(); }
        std::unique_ptr<BtnUI> button;
    };
    for (const bool byKey : {false, true}) {
        Destroyer destroyer;
        destroyer.button = std::make_unique<BtnUI>("Ok"_u, &destroyer, kCommandOk, 100);
        destroyer.button->DoClick({50, 11}, 0, false);
        if (byKey)
            destroyer.button->DoTextInput(UString(), 0, Kestrin::kKeyReturn);
        else
            destroyer.button->DoMouseUp(0);
        EXPECT_EQ(destroyer.button, nullptr);
    }
}

TEST_F(BtnUITest, IsPressedBySpaceAndReturnOnly) {
    const UString space = " "_u;
    EXPECT_TRUE(button.DoTextInput(space, 0, Kestrin::kKeyNone));
    EXPECT_TRUE(button.DoTextInput(UString(), 0, Kestrin::kKeyReturn));
    EXPECT_TRUE(button.DoTextInput(UString(), 0, Kestrin::kKeyEnter));
    EXPECT_FALSE(button.DoTextInput("x"_u, 0, Kestrin::kKeyNone));
    EXPECT_EQ(sent, 3);
}

} // namespace
