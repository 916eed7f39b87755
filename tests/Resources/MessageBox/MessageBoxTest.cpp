#include "Resources/MessageBox.h"

#include "UI/Window.h"

#include "Platform/UI/NativeApplication.h"
#include "tests/support/Desktop.h"
#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

using Kestrin::NativeApplication;
using testing::ElementsAre;

namespace {

UString Text(const char* text) {
    return UString(text, UString::kUTF8);
}

class MessageBox : public testing::Test {
protected:
    MessageBox() { RecordingLog::Clear(); }

    /// Asks the question of `type`; `act` sees the alert and answers it.
    int Ask(unsigned int type, std::function<void(const Desktop::Alert&)> act) {
        script.WhenAlertIsOpen(std::move(act));
        return Kestrin::MessageBox(Text("Do you want to view the help file?"),
                                   Text("No compatible surfaces"), type);
    }
    int AskAndType(unsigned int type, const char* keys) {
        return Ask(type, [keys](const Desktop::Alert&) { Desktop::Type(keys); });
    }

    Desktop::Script script;
};

TEST_F(MessageBox, AsksYesOrNoInTheWordsOfTheStringsTable) {
    const int answer = Ask(4, [](const Desktop::Alert& alert) {
        Desktop::Picture("question");
        EXPECT_EQ(alert.headline, "No compatible surfaces");
        EXPECT_EQ(alert.text, "Do you want to view the help file?");
        EXPECT_FALSE(alert.isCritical);
        // Text beyond ASCII is cut at as many bytes as it has characters.
        EXPECT_THAT(alert.buttons, ElementsAre("Oui & non", "Nein, größ"));
        EXPECT_EQ(alert.focused, "Oui & non");
        EXPECT_EQ(alert.defaultButton, "Oui & non");
        Desktop::Type("Return");
    });
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(AskAndType(4, "Tab Return"), 2);
    EXPECT_EQ(AskAndType(4, "Right space"), 2);
    EXPECT_EQ(AskAndType(4, "Escape"), 2);
}

TEST_F(MessageBox, AsksOKOrCancelByTheMouse) {
    const auto clickAt = [](const Desktop::Rectangle& r) {
        Desktop::MoveTo(r.x + r.width / 2, r.y + r.height / 2);
        Desktop::Input("click 1");
    };
    EXPECT_EQ(Ask(1,
                  [&](const Desktop::Alert& alert) {
                      EXPECT_THAT(alert.buttons, ElementsAre("MBOK", "MBCancel"));
                      clickAt(alert.buttonPlaces[1]);
                  }),
              2);
    EXPECT_EQ(Ask(1, [&](const Desktop::Alert& alert) { clickAt(alert.buttonPlaces[0]); }), 1);
    EXPECT_EQ(Ask(1, [](const Desktop::Alert&) { Desktop::CloseActiveWindow(); }), 2);
}

TEST_F(MessageBox, ACriticalMessageHasThePlatformsButton) {
    for (const char* key : {"Return", "Escape"})
        EXPECT_EQ(Ask(48,
                      [key](const Desktop::Alert& alert) {
                          Desktop::Picture("critical");
                          EXPECT_TRUE(alert.isCritical);
                          EXPECT_THAT(alert.buttons, ElementsAre(testing::HasSubstr("OK")));
                          Desktop::Type(key);
                      }),
                  1);
    EXPECT_TRUE(RecordingLog::Lines().empty());
}

TEST_F(MessageBox, ReportsButtonsThatItDoesNotKnow) {
    EXPECT_EQ(AskAndType(0x72, "Return"), 1);
    EXPECT_THAT(RecordingLog::Lines(), ElementsAre("Unknown message box type"));
}

TEST_F(MessageBox, ShowsMarkupLiterallyAndLongTextWrapped) {
    const std::string text = "<b>" + std::string(300, 'x') + "</b> " + [] {
        std::string words;
        for (int i = 0; i < 200; ++i)
            words += "word & ";
        return words;
    }();
    script.WhenAlertIsOpen([&](const Desktop::Alert& alert) {
        Desktop::Picture("long");
        EXPECT_EQ(alert.text, text);
        EXPECT_GE(alert.place.x, 0);
        EXPECT_LE(alert.place.x + alert.place.width, Desktop::Screen().width);
        EXPECT_LE(alert.place.y + alert.place.height, Desktop::Screen().height);
        Desktop::Type("Return");
    });
    EXPECT_EQ(Kestrin::MessageBox(UString(text, UString::kASCII), Text("<i>"), 48), 1);
}

/// A window whose owner goes away together with it.
struct Owner final : Kestrin::Window::WindowEventClient {
    Owner() { window->Activate(); }
    ~Owner() { Kestrin::Window::DestroyWindow(window); }
    void WindowClosedNotification(Kestrin::Window*) override {}
    void WindowActivationChanged(Kestrin::Window*, bool isActive) override { active = isActive; }

    Kestrin::Window* window = Kestrin::Window::Create(*this, Text("Owner"), 300, 100, 0);
    bool active = false;
};

TEST_F(MessageBox, TheWindowBeneathMayGoWhileItIsOpen) {
    auto owner = std::make_unique<Owner>();
    script.When([&] { return owner->active; }, [] {});
    script.Play();
    EXPECT_EQ(Ask(4, [&](const Desktop::Alert&) { owner.reset(); }), 2);
    EXPECT_FALSE(Desktop::OpenAlert());
}

TEST_F(MessageBox, TheEndOfTheProgramAnswersForTheSecondButton) {
    EXPECT_EQ(Ask(4, [](const Desktop::Alert&) { NativeApplication::Shared().Terminate(); }), 2);
    EXPECT_EQ(Kestrin::MessageBox(Text("more"), Text("questions"), 1), 2);
    EXPECT_EQ(Kestrin::MessageBox(Text("more"), Text("news"), 48), 1);
}

} // namespace
