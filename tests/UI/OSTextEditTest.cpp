#include "UI/OSTextEdit.h"

#include "UI/KeyCodes.h"

#include "tests/UI/Picture.h"
#include "tests/UI/ViewTestSupport.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/NativeInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Kestrin;
using testing::ElementsAre;

namespace {

/// Notes what it is asked and told; lets every key through unless told otherwise.
class NotingEditClient final : public OSTextEditViewClient {
public:
    std::vector<std::string> notes;
    std::function<bool()> filter;
    std::function<void(bool active)> during;

    bool FilterTextEditDoTextInput(OSTextEdit* edit, const UString& text, unsigned int modifiers,
                                   unsigned char key) override {
        notes.push_back("'" + text.utf8_str() + "' " + std::to_string(modifiers) + " " +
                        std::to_string(key) + " in '" + edit->GetText().utf8_str() + "'");
        return !filter || filter();
    }
    void ActiveStateChanged(OSTextEdit*, bool active) override {
        notes.push_back(active ? "active" : "inactive");
        if (during)
            during(active);
    }
};

/// A text edit of 120 by 22 beside a control in a shown, active window.
class TextEdit : public testing::Test {
protected:
    TextEdit()
        : window(Window::Create(windowClient, Text("Edit"), 300, 100, 0))
        , root(*window->GetRootView()) {
        CreateEdit(&client, true);
        button.PlaceInView(&root, 200, 20);
        button.SetDimensions(80, 22);
        button.SetTabStop(true);
        window->ShowHide(true);
        EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
        windowNotes.clear();
    }
    ~TextEdit() override {
        edit.reset();
        Window::DestroyWindow(window);
        NativeInput::Settle();
    }

    void CreateEdit(OSTextEditViewClient* editClient, bool handlesEditCommands) {
        edit.reset(OSTextEdit::Create(editClient, handlesEditCommands));
        edit->PlaceInView(&root, 20, 20);
        edit->SetDimensions(120, 22);
        edit->SetFont(kFontPlain, 14);
        NativeInput::Settle();
    }

    void Focus() {
        edit->EnableKeyFocus(true);
        NativeInput::Settle();
        client.notes.clear();
    }

    void Type(const std::u16string& text) {
        for (const char16_t character : text)
            NativeInput::Key(root, character);
    }

    std::string Shown() { return edit->GetText().utf8_str(); }

    std::vector<std::string> windowNotes;
    NotingClient windowClient{windowNotes};
    NotingEditClient client;
    Window* window;
    View& root;
    std::unique_ptr<OSTextEdit> edit;
    NotingView button{"button", windowNotes};
};

TEST_F(TextEdit, ShowsEachKeyToTheClientBeforeTheFieldTakesIt) {
    edit->SetText(Text("45"));
    Focus();
    client.filter = [] { return false; };
    Type(u"1");
    NativeInput::RepeatKey(root, u'1');
    NativeInput::TypeByInputMethod(root, "1");
    client.filter = nullptr;
    Type(u"2");
    NativeInput::RepeatKey(root, u'3');
    Type({kNativeBackspace, kNativeUpArrow});
    NativeInput::TypeByInputMethod(root, "\u00E9");
    EXPECT_THAT(client.notes, ElementsAre("'1' 0 0 in '45'", "'1' 0 0 in '45'", "'1' 0 0 in '45'",
                                          "'2' 0 0 in '45'", "'3' 0 0 in '2'", "'' 0 8 in '23'",
                                          "'' 0 30 in '2'", "'\u00E9' 0 0 in '2'"));
    EXPECT_EQ(Shown(), "2\u00E9");
    EXPECT_THAT(windowNotes, testing::IsEmpty()) << "a key of the field is nobody else's";
}

TEST_F(TextEdit, ShortcutsTypeNothingAndWork) {
    Focus();
    Type(u"12");
    for (char16_t key : {u'a', u'c', u'v', u'v'})
        NativeInput::Key(root, key, kNativeControl);
    EXPECT_EQ(Shown(), "1212");
    EXPECT_EQ(client.notes.back(), "'' 4096 0 in '12'");
    NativeInput::Key(root, u'z', kNativeControl);
    EXPECT_EQ(Shown(), "12") << "the field can undo";
}

TEST_F(TextEdit, ReturnEnterAndEscapeEndEditingUnlessTheClientSwallowsThem) {
    for (char16_t key : {kNativeReturn, kNativeEnter, kNativeEscape}) {
        Focus();
        client.filter = [] { return false; };
        Type({key});
        EXPECT_EQ(client.notes.size(), 1U) << "still editing";
        client.filter = nullptr;
        Type({key, u'9'});
        EXPECT_EQ(client.notes.back(), "inactive") << "nobody has the focus now";
    }
}

TEST_F(TextEdit, ShowsWhatTheClientSetsWhenEditingEnds) {
    Focus();
    Type(u"128");
    client.during = [this](bool active) {
        client.notes.push_back(Shown());
        if (!active)
            edit->SetText(Text("a\u00E4\u00E4"));
    };
    Type({kNativeReturn});
    EXPECT_EQ(client.notes.back(), "128");
    EXPECT_EQ(Shown(), "a\u00E4") << "cut at as many bytes as it has units";
}

TEST_F(TextEdit, MovingTheFocusInTheWindowEndsTheEdit) {
    Focus();
    Type({kNativeTab});
    EXPECT_THAT(client.notes, ElementsAre("'' 0 0 in ''", "inactive"));
    Type({kNativeTab});
    EXPECT_EQ(client.notes.back(), "active") << "the field is a Tab stop";
    edit->SetAccessibility(AccessibleRole::kTextField, Text("Group"));
    const NativeInput::Spoken spoken = NativeInput::SpokenOfFocus(root);
    EXPECT_EQ(spoken.role + " " + spoken.name, "text field Group");
    windowNotes.clear();
    NativeInput::Click(button, {5, 5});
    EXPECT_EQ(client.notes.back(), "inactive");
    EXPECT_THAT(windowNotes, ElementsAre("button focus", "button click 5,5", "button up"));
}

TEST_F(TextEdit, GoesOnAfterAnAlertAndAnotherWindowUnlessTheFocusMoved) {
    Focus();
    NativeInput::RunModalWindow();
    NotingClient otherClient{windowNotes};
    Window* other = Window::Create(otherClient, Text("Other"), 100, 50, 0);
    for (const bool focusMoves : {false, true}) {
        other->Activate();
        EXPECT_TRUE(NativeInput::WaitUntil([&] { return !root.IsViewActive(); }));
        if (focusMoves)
            button.EnableKeyFocus(true);
        window->Activate();
        EXPECT_TRUE(NativeInput::WaitUntil([&] { return root.IsViewActive(); }));
        Type(u"3");
        EXPECT_EQ(Shown(), "3");
    }
    EXPECT_THAT(client.notes, ElementsAre("'3' 0 0 in ''", "inactive"));
    Window::DestroyWindow(other);
}

TEST_F(TextEdit, MayBeDestroyedInEachOfItsCalls) {
    const Point inside{5, 5};
    const std::function<void()> calls[] = {
        [&] { edit->EnableKeyFocus(true); },
        [&] { Type(u"1"); },
        [&] { Type({kNativeReturn}); },
        [&] { NativeInput::Click(button, inside); },
    };
    for (const auto& call : calls) {
        window->Activate();
        EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
        if (&call != calls)
            Focus();
        client.filter = [this] {
            edit.reset();
            return true;
        };
        client.during = [this](bool) {
            NativeInput::RunModalWindow();
            edit.reset();
            NativeInput::RunModalWindow();
        };
        call();
        EXPECT_FALSE(edit);
        client.filter = nullptr;
        client.during = nullptr;
        CreateEdit(&client, true);
    }
}

TEST_F(TextEdit, ADisabledFieldTakesNoKeysAndEndsItsEdit) {
    Focus();
    edit->Enable(false);
    EXPECT_THAT(client.notes, ElementsAre("inactive"));
    NativeInput::Click(*edit, {5, 5});
    Type(u"1");
    EXPECT_EQ(Shown(), "");
}

TEST_F(TextEdit, TakesTheEditMenusCommandsUnlessCreatedWithout) {
    CapturedOutput errors(stderr);
    EXPECT_TRUE(edit->CanHandle({1, 7}) && edit->HandleCommand({1, 7}));
    for (const CommandSpecifier refused : {CommandSpecifier{1, 6}, {2, 3}, {0, 3}})
        EXPECT_FALSE(edit->CanHandle(refused) || edit->HandleCommand(refused));
    EXPECT_EQ(errors.Text(), "SelectAll not implemented\n");
    CreateEdit(nullptr, false);
    EXPECT_FALSE(edit->CanHandle({1, 3}) || edit->HandleCommand({1, 3}));
    Focus();
    Type(u"1");
    Type({kNativeReturn});
    EXPECT_EQ(Shown(), "1") << "a client is not needed";
}

TEST_F(TextEdit, ShowsItsTextWholeVerticallyCentredAndAligned) {
    const auto inkOf = [this](TextAlignment alignment) {
        edit->SetAlignment(alignment);
        const NativeInput::Picture picture(*edit);
        return InkWithin(120, 22, [&](int x, int y) { return picture.At(x, y) != 0x0000FF; });
    };
    edit->SetBackgroundColor({0, 0, 1, 1});
    edit->SetText(Text("HIH"));
    EXPECT_LT(inkOf(kTextAlignLeft).left, 6);
    EXPECT_EQ(inkOf(kTextAlignDefault).left, inkOf(kTextAlignLeft).left);
    EXPECT_NEAR(inkOf(kTextAlignRight).right, 117, 4);
    EXPECT_NEAR(inkOf(kTextAlignCenter).MiddleX(), 60, 1.5);
    EXPECT_NEAR(inkOf(kTextAlignCenter).MiddleY(), 11, 2);
    edit->SetFont(static_cast<FontID>(9), 14);
    edit->SetText(Text("(gjpq)|"));
    EXPECT_GT(inkOf(kTextAlignLeft).top, 0) << "the text is clipped at the top";
    EXPECT_LT(inkOf(kTextAlignLeft).bottom, 21) << "the text is clipped at the bottom";
}

} // namespace
