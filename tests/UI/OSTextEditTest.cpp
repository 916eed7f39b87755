#include "UI/OSTextEdit.h"

#include "UI/KeyCodes.h"

#include "tests/UI/ViewTestSupport.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/NativeInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Kestrin;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Notes what it is asked and told; lets every key through unless told otherwise.
class NotingEditClient final : public OSTextEditViewClient {
public:
    std::vector<std::string> notes;
    std::function<bool(unsigned char key)> filter;
    std::function<void(bool active)> during;

    bool FilterTextEditDoTextInput(OSTextEdit*, const UString& text, unsigned int modifiers,
                                   unsigned char key) override {
        notes.push_back("'" + text.utf8_str() + "' " + std::to_string(modifiers) + " " +
                        std::to_string(key));
        const auto call = filter;
        return !call || call(key);
    }
    void ActiveStateChanged(OSTextEdit*, bool active) override {
        notes.push_back(active ? "active" : "inactive");
        if (const auto call = during)
            call(active);
    }
};

/// A text edit of 120 by 22 beside a control in a shown, active window.
class TextEdit : public testing::Test {
protected:
    TextEdit()
        : window(Window::Create(windowClient, Text("Edit"), 300, 100, 0))
        , root(*window->GetRootView())
        , edit(OSTextEdit::Create(&client, true)) {
        Place(*edit, {20, 20, 120, 22});
        Place(button, {200, 20, 80, 22});
        button.SetTabStop(true);
        edit->SetFont(kFontPlain, 14);
        window->ShowHide(true);
        EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
        windowNotes.clear();
    }
    ~TextEdit() override {
        edit.reset();
        Window::DestroyWindow(window);
        NativeInput::Settle();
    }

    void Place(View& view, const Rect& rect) {
        view.PlaceInView(&root, rect.x, rect.y);
        view.SetDimensions(rect.width, rect.height);
    }

    void Focus() {
        edit->EnableKeyFocus(true);
        NativeInput::Settle();
        client.notes.clear();
    }

    void Type(const char* text) {
        for (const char* character = text; *character; ++character)
            NativeInput::Key(root, static_cast<char16_t>(*character));
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
    Focus();
    client.filter = [this](unsigned char key) {
        client.notes.push_back("shows " + Shown());
        return client.notes.size() > 4 || key != kKeyNone;
    };
    NativeInput::Key(root, u'1');
    EXPECT_EQ(Shown(), "");
    NativeInput::Key(root, kNativeUpArrow);
    NativeInput::Key(root, u'2');
    NativeInput::RepeatKey(root, u'3');
    NativeInput::Key(root, kNativeBackspace);
    NativeInput::TypeByInputMethod(root, "\u00E9");
    EXPECT_THAT(client.notes,
                ElementsAre("'1' 0 0", "shows ", "'' 0 30", "shows ", "'2' 0 0", "shows ",
                            "'3' 0 0", "shows 2", "'' 0 8", "shows 23", "'\u00E9' 0 0", "shows 2"));
    EXPECT_EQ(Shown(), "2\u00E9");
    client.filter = [](unsigned char) { return false; };
    NativeInput::TypeByInputMethod(root, "5");
    NativeInput::RepeatKey(root, u'6');
    EXPECT_EQ(Shown(), "2\u00E9");
    EXPECT_THAT(windowNotes, IsEmpty()) << "a key of the field is nobody else's";
}

TEST_F(TextEdit, ShortcutsTypeNothingAndWork) {
    Focus();
    Type("12");
    client.notes.clear();
    for (char16_t key : {u'a', u'c', u'v', u'v'})
        NativeInput::Key(root, key, kNativeControl);
    EXPECT_EQ(Shown(), "1212");
    EXPECT_THAT(client.notes, testing::Each("'' 4096 0"));
    NativeInput::Key(root, u'z', kNativeControl);
    EXPECT_EQ(Shown(), "12") << "the field can undo";
}

TEST_F(TextEdit, ReturnEnterAndEscapeEndEditingUnlessTheClientSwallowsThem) {
    for (char16_t key : {kNativeReturn, kNativeEnter, kNativeEscape}) {
        Focus();
        client.filter = [](unsigned char) { return false; };
        NativeInput::Key(root, key);
        EXPECT_EQ(client.notes.back().front(), '\'') << "still editing";
        client.filter = nullptr;
        NativeInput::Key(root, key);
        EXPECT_EQ(client.notes.back(), "inactive");
        client.notes.clear();
        Type("9");
        EXPECT_THAT(client.notes, IsEmpty()) << "nobody has the focus now";
    }
    EXPECT_EQ(Shown(), "");
}

TEST_F(TextEdit, ShowsWhatTheClientSetsWhenEditingEnds) {
    Focus();
    Type("128");
    client.during = [this](bool active) {
        client.notes.push_back(Shown());
        if (!active)
            edit->SetText(Text("7"));
    };
    NativeInput::Key(root, kNativeReturn);
    EXPECT_EQ(client.notes.back(), "128");
    EXPECT_EQ(Shown(), "7");
    client.during = nullptr;
    Focus();
    NativeInput::Key(root, u'z', kNativeControl);
    EXPECT_EQ(Shown(), "7") << "what was typed in an earlier edit is not to be undone";
}

TEST_F(TextEdit, MovingTheFocusInTheWindowEndsTheEdit) {
    Focus();
    NativeInput::Key(root, kNativeTab);
    EXPECT_THAT(client.notes, ElementsAre("'' 0 0", "inactive"));
    EXPECT_TRUE(button.HasKeyFocus());
    NativeInput::Key(root, kNativeTab);
    EXPECT_EQ(client.notes.back(), "active") << "the field is a Tab stop";
    windowNotes.clear();
    NativeInput::Click(button, {5, 5});
    EXPECT_EQ(client.notes.back(), "inactive");
    EXPECT_THAT(windowNotes, ElementsAre("button focus", "button click 5,5", "button up"));
    NativeInput::Click(*edit, {5, 5});
    EXPECT_EQ(client.notes.back(), "active");
}

TEST_F(TextEdit, AnotherWindowAndAnAlertLeaveTheEditGoing) {
    Focus();
    Type("12");
    client.notes.clear();
    NativeInput::RunModalWindow();
    NotingClient otherClient{windowNotes};
    Window* other = Window::Create(otherClient, Text("Other"), 100, 50, 0);
    other->Activate();
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return other->GetRootView()->IsViewActive(); }));
    window->Activate();
    EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
    Window::DestroyWindow(other);
    EXPECT_THAT(client.notes, IsEmpty());
    Type("3");
    EXPECT_EQ(Shown(), "123") << "the edit goes on where it was";
}

TEST_F(TextEdit, FocusThatMovesWhileTheWindowIsInactiveEndsTheEdit) {
    Focus();
    NotingClient otherClient{windowNotes};
    Window* other = Window::Create(otherClient, Text("Other"), 100, 50, 0);
    other->Activate();
    EXPECT_TRUE(NativeInput::WaitUntil([&] { return other->GetRootView()->IsViewActive(); }));
    button.EnableKeyFocus(true);
    window->Activate();
    EXPECT_TRUE(NativeInput::WaitUntil([this] { return root.IsViewActive(); }));
    EXPECT_THAT(client.notes, ElementsAre("inactive"));
    Window::DestroyWindow(other);
}

TEST_F(TextEdit, MayBeDestroyedInEachOfItsCalls) {
    const auto startAgain = [this] {
        edit.reset(OSTextEdit::Create(&client, true));
        Place(*edit, {20, 20, 120, 22});
        client.filter = nullptr;
        client.during = nullptr;
        NativeInput::Settle();
    };
    client.filter = [this](unsigned char) {
        edit.reset();
        return true;
    };
    for (char16_t key : {char16_t{u'1'}, char16_t{kNativeReturn}}) {
        const auto filter = client.filter;
        Focus();
        NativeInput::Key(root, key);
        EXPECT_FALSE(edit);
        startAgain();
        client.filter = filter;
    }

    startAgain();
    client.during = [this](bool) { edit.reset(); };
    edit->EnableKeyFocus(true);
    EXPECT_FALSE(edit);

    startAgain();
    Focus();
    client.during = [this](bool) {
        NativeInput::RunModalWindow();
        edit.reset();
        NativeInput::RunModalWindow();
    };
    NativeInput::Click(button, {5, 5});
    EXPECT_FALSE(edit);
    EXPECT_EQ(client.notes.back(), "inactive");
}

TEST_F(TextEdit, ADisabledFieldTakesNoKeysAndEndsItsEdit) {
    Focus();
    edit->Enable(false);
    EXPECT_THAT(client.notes, ElementsAre("inactive"));
    NativeInput::Click(*edit, {5, 5});
    Type("1");
    EXPECT_EQ(Shown(), "");
    edit->Enable(true);
    NativeInput::Click(*edit, {5, 5});
    Type("1");
    EXPECT_EQ(Shown(), "1");
}

TEST_F(TextEdit, CutsTextAtItsLengthInBytes) {
    edit->SetText(Text("a\u00E4\u00E4"));
    EXPECT_EQ(Shown(), "a\u00E4");
    edit->SetText(UString());
    EXPECT_TRUE(edit->GetText().empty());
}

TEST_F(TextEdit, TakesTheEditMenusCommandsAndSaysWhatItDoesNotProvide) {
    CapturedOutput errors(stderr);
    for (std::int16_t item : {3, 4, 5, 7}) {
        EXPECT_TRUE(edit->CanHandle({1, item}));
        EXPECT_TRUE(edit->HandleCommand({1, item}));
    }
    for (const CommandSpecifier refused : {CommandSpecifier{1, 6}, {2, 3}, {0, 3}}) {
        EXPECT_FALSE(edit->CanHandle(refused));
        EXPECT_FALSE(edit->HandleCommand(refused));
    }
    unsigned int start = 1;
    unsigned int end = 1;
    edit->GetSelection(start, end);
    EXPECT_EQ(edit->Width() + edit->Height() + edit->LineHeight(), 0);
    EXPECT_FALSE(edit->HasSelection());
    EXPECT_EQ(errors.Text(), "Cut not implemented\nCopy not implemented\nPaste not implemented\n"
                             "SelectAll not implemented\nGetSelection not implemented\n"
                             "Width not implemented\nHeight not implemented\n"
                             "LineHeight not implemented\nHasSelection not implemented\n");

    edit.reset(OSTextEdit::Create(nullptr, false));
    EXPECT_FALSE(edit->CanHandle({1, 3}));
    EXPECT_FALSE(edit->HandleCommand({1, 3}));
    Place(*edit, {20, 20, 120, 22});
    Focus();
    Type("1");
    NativeInput::Key(root, kNativeReturn);
    EXPECT_EQ(Shown(), "1") << "a client is not needed";
}

TEST_F(TextEdit, PassesFocusAndNameOnToItsFieldAndSelectsTheText) {
    edit->SetAccessibility(AccessibleRole::kTextField, Text("Group"));
    edit->SetText(Text("45"));
    Focus();
    EXPECT_TRUE(edit->HasKeyFocus());
    const NativeInput::Spoken spoken = NativeInput::SpokenOfFocus(root);
    EXPECT_EQ(spoken.role + " " + spoken.name, "text field Group");
    Type("6");
    EXPECT_EQ(Shown(), "6");
}

/// Where a text of that colour stands in a picture of the edit, in its pixels.
struct Extent {
    int left = 1 << 20, top = 1 << 20, right = -1, bottom = -1;
};

Extent ExtentOf(const NativeInput::Picture& picture, std::uint32_t background) {
    Extent extent;
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            if (picture.At(x, y) == background)
                continue;
            extent = {std::min(extent.left, x), std::min(extent.top, y), std::max(extent.right, x),
                      std::max(extent.bottom, y)};
        }
    }
    return extent;
}

TEST_F(TextEdit, ShowsItsTextWholeVerticallyCentredAndAligned) {
    edit->SetBackgroundColor({1, 1, 1, 1});
    edit->SetDefaultForegroundColor({0, 0, 0, 1});
    edit->SetText(Text("HIH"));
    Extent extents[3];
    for (TextAlignment alignment : {kTextAlignLeft, kTextAlignCenter, kTextAlignRight}) {
        edit->SetAlignment(alignment);
        extents[alignment - kTextAlignLeft] = ExtentOf(NativeInput::Picture(*edit), 0xFFFFFF);
    }
    EXPECT_LT(extents[0].left, 6);
    EXPECT_NEAR((extents[1].left + extents[1].right + 1) / 2.0, 60, 1.5);
    EXPECT_NEAR(extents[2].right, 117, 4);
    EXPECT_NEAR((extents[1].top + extents[1].bottom + 1) / 2.0, 11, 2);
    edit->SetAlignment(kTextAlignDefault);
    EXPECT_EQ(ExtentOf(NativeInput::Picture(*edit), 0xFFFFFF).left, extents[0].left);

    edit->SetFont(static_cast<FontID>(9), 14);
    edit->SetText(Text("(gjpq)|"));
    const Extent tall = ExtentOf(NativeInput::Picture(*edit), 0xFFFFFF);
    EXPECT_GT(tall.top, 0) << "the text is clipped at the top";
    EXPECT_LT(tall.bottom, 21) << "the text is clipped at the bottom";
}

TEST_F(TextEdit, PaintsItsBackgroundAndItsTextInTheirColours) {
    edit->SetBackgroundColor({0, 0, 1, 1});
    edit->SetDefaultForegroundColor({1, 1, 0, 1});
    edit->SetText(Text("HHHHHHHHHH"));
    const NativeInput::Picture picture(*edit);
    EXPECT_EQ(picture.At(118, 2), 0x0000FFU);
    int yellow = 0;
    for (int x = 0; x < 120; ++x)
        yellow += picture.At(x, 11) == 0xFFFF00 ? 1 : 0;
    EXPECT_GT(yellow, 3);
}

} // namespace
