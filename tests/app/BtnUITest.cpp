#include "app/BtnUI.h"

#include "UI/KeyCodes.h"

#include "tests/app/RecordingHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Kestrin::Point;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Point kInside{50, 11};
constexpr Point kEdge{100, 22};
constexpr Point kOutside{50, 40};

class BtnUITest : public testing::Test {
protected:
    RecordingHandler handler;
    BtnUI button{UString("Ok", UString::kASCII), &handler, kCommandOk, 100};
};

TEST_F(BtnUITest, SendsItsCommandWhenReleasedInside) {
    button.DoClick(kInside, 0, false);
    EXPECT_THAT(handler.commands, IsEmpty());
    button.DoTrack(kEdge, 0);
    button.DoMouseUp(0);
    EXPECT_THAT(handler.commands, ElementsAre(kCommandOk));

    button.DoMouseUp(0);
    EXPECT_EQ(handler.commands.size(), 1u) << "a release without a press";
}

TEST_F(BtnUITest, FollowsThePointerWhilePressed) {
    button.DoClick(kInside, 0, false);
    button.DoTrack(kOutside, 0);
    button.DoMouseUp(0);
    EXPECT_THAT(handler.commands, IsEmpty());

    button.DoClick(kInside, 0, false);
    button.DoTrack(kOutside, 0);
    button.DoTrack(kInside, 0);
    button.DoMouseUp(0);
    EXPECT_THAT(handler.commands, ElementsAre(kCommandOk));

    button.DoTrack(kInside, 0);
    button.DoMouseUp(0);
    EXPECT_EQ(handler.commands.size(), 1u) << "tracking without a press";
}

TEST_F(BtnUITest, IsPressedBySpaceAndReturnOnly) {
    const UString space(" ", UString::kASCII);
    EXPECT_TRUE(button.DoTextInput(space, 0, Kestrin::kKeyNone));
    EXPECT_TRUE(button.DoTextInput(UString("\r", UString::kASCII), 0, Kestrin::kKeyReturn));
    EXPECT_TRUE(button.DoTextInput(UString(), 0, Kestrin::kKeyEnter));
    EXPECT_FALSE(button.DoTextInput(UString("x", UString::kASCII), 0, Kestrin::kKeyNone));
    EXPECT_FALSE(button.DoTextInput(UString(), 0, Kestrin::kKeyEscape));
    EXPECT_THAT(handler.commands, ElementsAre(kCommandOk, kCommandOk, kCommandOk));
}

TEST_F(BtnUITest, WithoutAHandlerDoesNothing) {
    BtnUI mute(UString("Mute", UString::kASCII), nullptr, kCommandOk, 100);
    mute.DoClick(kInside, 0, false);
    mute.DoMouseUp(0);
}

} // namespace
