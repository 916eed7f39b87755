#include "UI/OSTextEdit.h"

#include "tests/Source/UI/ViewTestSupport.h"

using namespace Kestrin;
using testing::ElementsAre;

namespace {

/// Notes what it is asked and told; lets every key through unless told otherwise.
class NotingEditClient final : public OSTextEditViewClient {
public:
    std::vector<std::string> notes;
    std::function<bool()> filter;
    std::function<void(bool active)> during;
    std::string refused;

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
    bool AcceptsText(OSTextEdit*, const UString& text) override {
        return refused.empty() || text.utf8_str().find(refused) == std::string::npos;
    }
};

/// A text edit below two controls, of which the right one is a Tab stop.
class TextEdit : public ShownWindow {
protected:
    TextEdit() {
        CreateEdit(&client);
        right.SetTabStop(true);
    }

    void CreateEdit(OSTextEditViewClient* editClient) {
        edit.reset(OSTextEdit::Create(editClient, true));
        Place(*edit, {20, 60, 120, 22});
    }

    void Focus() {
        edit->EnableKeyFocus(true);
        NativeInput::Settle();
        said.clear();
    }

    void Type(const char* keys) { NativeInput::Type(root, keys); }
    std::string Shown() { return edit->GetText().utf8_str(); }

    NotingEditClient client;
    std::vector<std::string>& said = client.notes;
    std::unique_ptr<OSTextEdit> edit;
};

TEST_F(TextEdit, ShowsEachKeyToTheClientBeforeTheFieldTakesIt) {
    edit->SetText(Text("45"));
    Focus();
    notes.clear();
    client.filter = [] { return false; };
    Type("1");
    NativeInput::RepeatKey(root, '1');
    NativeInput::TypeByInputMethod(root, "1");
    client.filter = nullptr;
    Type("2");
    NativeInput::RepeatKey(root, '3');
    Type("Backspace, Up");
    NativeInput::TypeByInputMethod(root, "\u00E9");
    EXPECT_THAT(said, ElementsAre("'1' 0 0 in '45'", "'1' 0 0 in '45'", "'1' 0 0 in '45'",
                                  "'2' 0 0 in '45'", "'3' 0 0 in '2'", "'' 0 8 in '23'",
                                  "'' 0 30 in '2'", "'\u00E9' 0 0 in '2'"));
    EXPECT_EQ(Shown(), "2\u00E9");
    EXPECT_THAT(notes, testing::IsEmpty()) << "a key of the field is nobody else's";
}

TEST_F(TextEdit, ShortcutsTypeNothingAndWork) {
    Focus();
    Type("1, 2");
    Type("Ctrl+A, Ctrl+C, Ctrl+V, Ctrl+V");
    EXPECT_EQ(Shown(), "1212");
    EXPECT_EQ(said.back(), "'' 4096 0 in '12'");
    Type("Ctrl+Z");
    EXPECT_EQ(Shown(), "12") << "the field can undo";
}

TEST_F(TextEdit, RefusesAsAWholeAnEditWhoseOutcomeTheClientDoesNotAccept) {
    Focus();
    Type("1, X, Ctrl+A, Ctrl+C");
    edit->SetText(Text("78"));
    client.refused = "x";
    Type("Home, Ctrl+V, Ctrl+A, Ctrl+V");
    NativeInput::DropText(*edit, {5, 5}, "2x");
    EXPECT_EQ(Shown(), "78");
    Type("Return");
    NativeInput::DropText(*edit, {5, 5}, "9");
    EXPECT_NE(Shown().find('9'), std::string::npos);
    EXPECT_EQ(said.back(), "active") << "what is dropped is judged when the edit ends";
}

TEST_F(TextEdit, ReturnEnterAndEscapeEndEditingUnlessTheClientSwallowsThem) {
    for (const char* key : {"Return", "Enter", "Escape"}) {
        Focus();
        client.filter = [] { return false; };
        Type(key);
        EXPECT_EQ(said.size(), 1U) << "still editing";
        client.filter = nullptr;
        Type(key);
        Type("9");
        EXPECT_EQ(said.back(), "inactive") << "nobody has the focus now";
    }
}

TEST_F(TextEdit, ShowsWhatTheClientSetsWhenEditingEnds) {
    Focus();
    Type("1, 2, 8");
    client.during = [this](bool active) {
        said.push_back(Shown());
        if (!active)
            edit->SetText(Text("a\u00E4\u00E4"));
    };
    Type("Return");
    EXPECT_EQ(said.back(), "128");
    EXPECT_EQ(Shown(), "a\u00E4") << "cut at as many bytes as it has units";
}

TEST_F(TextEdit, MovingTheFocusInTheWindowEndsTheEdit) {
    Focus();
    Type("Tab");
    EXPECT_THAT(said, ElementsAre("'' 0 0 in ''", "inactive"));
    Type("Tab");
    EXPECT_EQ(said.back(), "active") << "the field is a Tab stop";
    edit->SetAccessibility(AccessibleRole::kTextField, Text("Group"));
    EXPECT_EQ(NativeInput::SpokenOfFocus(root), "EditableText|Group||focused");
    notes.clear();
    NativeInput::Click(right, {5, 5});
    EXPECT_EQ(said.back(), "inactive");
    EXPECT_THAT(notes, ElementsAre("right focus", "right click 5,5", "right up"));
}

TEST_F(TextEdit, GoesOnAfterAnAlertAndAnotherWindowUnlessTheFocusMoved) {
    Focus();
    NativeInput::RunModalWindow();
    NotingClient otherClient{notes};
    Window* other = Window::Create(otherClient, Text("Other"), 100, 50, 0);
    for (const bool focusMoves : {false, true}) {
        other->Activate();
        EXPECT_TRUE(NativeInput::WaitUntil([&] { return !root.IsViewActive(); }));
        if (focusMoves)
            right.EnableKeyFocus(true);
        window->Activate();
        EXPECT_TRUE(NativeInput::WaitUntil([&] { return root.IsViewActive(); }));
        Type("3");
        EXPECT_EQ(Shown(), "3");
    }
    EXPECT_THAT(said, ElementsAre("'3' 0 0 in ''", "inactive"));
    Window::DestroyWindow(other);
}

TEST_F(TextEdit, MayBeDestroyedInEachOfItsCalls) {
    const Point inside{5, 5};
    const std::function<void()> calls[] = {
        [&] { edit->EnableKeyFocus(true); },
        [&] { Type("1"); },
        [&] { Type("Return"); },
        [&] { NativeInput::Click(right, inside); },
        [&] { edit->Enable(false); },
        [&] { edit->ShowHide(false); },
    };
    for (const auto& call : calls) {
        CreateEdit(&client);
        window->Activate();
        EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
        client.filter = nullptr;
        client.during = nullptr;
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
    }
}

TEST_F(TextEdit, ADisabledFieldEndsItsEditAndTakesNoFocusUntilItIsEnabled) {
    Focus();
    edit->Enable(false);
    NativeInput::Click(*edit, {5, 5});
    Type("1");
    edit->EnableKeyFocus(true);
    Type("1");
    EXPECT_THAT(said, ElementsAre("inactive"));
    EXPECT_FALSE(right.HasKeyFocus());
    edit->Enable(true);
    for (const bool tabStop : {true, false}) {
        edit->SetTabStop(tabStop);
        NativeInput::Click(right, {5, 5});
        said.clear();
        NativeInput::Click(*edit, {5, 5});
        EXPECT_THAT(said, ElementsAre("active"));
    }
}

} // namespace
