#include "UI/MessageBox.h"

#include "Platform/UI/NativeApplication.h"
#include "tests/Source/Strings/Text.h"
#include "tests/support/Desktop.h"

#include <gmock/gmock.h>

using Kestrin::NativeApplication;
using testing::ElementsAre;

namespace {

class MessageBox : public testing::Test {
protected:
    MessageBox() {
        for (int i = 0; i < 200; ++i)
            text += " & word";
    }

    /// Asks the question of `type`; `act` sees the alert and answers it.
    int Ask(unsigned int type, std::function<void(const Desktop::Alert&)> act) {
        script.WhenAlertIsOpen(std::move(act));
        return Kestrin::MessageBox(UString(text, UString::kASCII),
                                   UString(headline, UString::kASCII), type);
    }
    int AskAndType(unsigned int type, const char* keys) {
        return Ask(type, [keys](const Desktop::Alert&) { Desktop::Type(keys); });
    }

    std::string headline = "<i>R&D</i>";
    std::string text = "<b>" + std::string(300, 'x') + "</b>";
    Desktop::Script script;
};

TEST_F(MessageBox, AsksYesOrNoInTheWordsOfTheStringsTable) {
    const int answer = Ask(4, [](const Desktop::Alert& alert) {
        EXPECT_FALSE(alert.isCritical);
        // Text beyond ASCII is cut at as many bytes as it has characters.
        EXPECT_THAT(alert.buttons, ElementsAre("Oui & non", "Nein, größ"));
        EXPECT_EQ(alert.focused, "Oui & non");
        Desktop::Type("Return");
    });
    EXPECT_EQ(answer, 1);
    for (const char* keys : {"Tab Return", "Right space", "Escape", "alt+F4"})
        EXPECT_EQ(AskAndType(4, keys), 2) << keys;
}

TEST_F(MessageBox, ACriticalMessageHasThePlatformsButtonAndShowsMarkupWithinTheScreen) {
    for (const char* key : {"Return", "Escape"}) {
        headline += " is a headline of many bold letters";
        const auto type = [this, key](const Desktop::Alert& alert) {
            EXPECT_TRUE(alert.isCritical);
            EXPECT_THAT(alert.buttons, ElementsAre("Aceptar"));
            EXPECT_EQ(alert.headline, headline);
            EXPECT_TRUE(alert.isHeadlineWhole);
            EXPECT_EQ(alert.text, text);
            EXPECT_GE(alert.place.x, 0);
            EXPECT_LE(alert.place.x + alert.place.width, Desktop::Screen().width);
            EXPECT_LE(alert.place.y + alert.place.height, Desktop::Screen().height);
            Desktop::Type(key);
        };
        EXPECT_EQ(Ask(48, type), 1);
    }
    EXPECT_EQ(AskAndType(0x72, "Return"), 1);
}

TEST_F(MessageBox, TheEndOfTheProgramAnswersForTheSecondButtonUntilTheLoopHasEnded) {
    EXPECT_EQ(Ask(4, [](const Desktop::Alert&) { NativeApplication::Shared().Terminate(); }), 2);
    EXPECT_EQ(Kestrin::MessageBox("more"_u, "questions"_u, 1), 2);
    EXPECT_EQ(Kestrin::MessageBox("more"_u, "news"_u, 48), 1);
    NativeApplication::Shared().Run();
    EXPECT_EQ(AskAndType(4, "Return"), 1) << "shown, and answered by the user";
    EXPECT_EQ(Ask(4, [](const Desktop::Alert&) { NativeApplication::Shared().Terminate(); }), 2);
}

} // namespace
