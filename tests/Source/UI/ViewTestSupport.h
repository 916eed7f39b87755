#pragma once

#include "UI/DrawingContext.h"
#include "UI/View.h"
#include "UI/Window.h"

#include "tests/support/NativeInput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// What the tests of views and windows share: a window, and views that note what is told to them.

using Kestrin::Point;
using Kestrin::Rect;
using Kestrin::View;
using Kestrin::Window;

inline UString Text(const std::string& utf8) {
    return UString(utf8, UString::kUTF8);
}

/// Notes in a list that may be shared; `during` is called after each note, inside the hook.
struct Noting {
    std::vector<std::string>& notes;
    std::string prefix;
    std::function<void(const std::string& note)> during = {};

    void Note(const std::string& what) {
        const std::string note = prefix + what;
        notes.push_back(note);
        if (const auto call = during)
            call(note);
    }
    void NoteKey(const UString& text, unsigned int modifiers, unsigned char key) {
        Note("key '" + text.utf8_str() + "' " + std::to_string(modifiers) + " " +
             std::to_string(key));
    }
};

/// Notes every hook as a short text that begins with the view's name.
class NotingView : public View, public Noting {
public:
    NotingView(const std::string& name, std::vector<std::string>& list)
        : Noting{list, name + " "} {}

    bool takesClicks = true;
    bool tracksMouse = false;
    bool takesKeys = false;
    bool isOpaque = false;

    bool SupportsFeature(ViewFeature feature) override {
        return (feature == kViewFeatureClicks && takesClicks) ||
               (feature == kViewFeatureMouseTracking && tracksMouse) ||
               (feature == kViewFeatureTransparent && !isOpaque);
    }
    void DoClick(const Point& at, unsigned int modifiers, bool doubleClick) override {
        Note((doubleClick ? "double click " : "click ") + Words(at, modifiers));
    }
    void DoTrack(const Point& at, unsigned int modifiers) override {
        Note(at.x < -1000 ? "track away" : "track " + Words(at, modifiers));
    }
    void DoMouseUp(unsigned int) override { Note("up"); }
    void DoMousePosition(MousePosInfo info, const Point& at, unsigned int m) override {
        Note((info == kMousePosInside ? "inside " : "exited ") + Words(at, m));
    }
    bool DoTextInput(const UString& text, unsigned int m, unsigned char key) override {
        const bool takes = takesKeys;
        NoteKey(text, m, key);
        return takes;
    }
    void DoVisibleStateChanged() override { Note("visibility"); }
    void DoKeyFocusStateChanged(bool focus) override { Note(focus ? "focus" : "no focus"); }

private:
    static std::string Words(const Point& at, unsigned int modifiers) {
        const std::string place =
            std::to_string(std::lround(at.x)) + "," + std::to_string(std::lround(at.y));
        return modifiers ? place + " mods " + std::to_string(modifiers) : place;
    }
};

/// A client that notes what its window reports.
class NotingClient final : public Window::WindowEventClient, public Noting {
public:
    explicit NotingClient(std::vector<std::string>& list)
        : Noting{list, "window "} {}

    void WindowClosedNotification(Window*) override { Note("closed"); }
    bool DoTextInput(const UString& text, unsigned int m, unsigned char key) override {
        NoteKey(text, m, key);
        return true;
    }
    void WindowActivationChanged(Window*, bool active) override {
        Note(active ? "active" : "inactive");
    }
    void WindowVisiblilityChanged(Window*, bool visible) override {
        Note(visible ? "visible" : "invisible");
    }
    void WindowSizeChanged(Window*, Rect) override { Note("resized"); }
};

/// A shown, active, resizable window of 200 by 100 with two views in it.
class ShownWindow : public testing::Test {
protected:
    ShownWindow() {
        Place(left, {0, 0, 50, 50});
        Place(right, {100, 0, 50, 50});
        window->ShowHide(true);
        // A window manager puts its frame around the window after it is shown.
        EXPECT_TRUE(NativeInput::WaitUntil(
            [this] { return root.IsViewActive() && window->GetRect().y > 0; }));
        notes.clear();
    }
    ~ShownWindow() override {
        Window::DestroyWindow(window);
        NativeInput::Settle();
    }

    void Place(View& view, const Rect& rect, View* parent = nullptr) {
        view.PlaceInView(parent ? parent : &root, rect.x, rect.y);
        view.SetDimensions(rect.width, rect.height);
        NativeInput::Settle();
        notes.clear();
    }

    std::vector<std::string> notes;
    NotingClient client{notes};
    NotingView left{"left", notes};
    NotingView right{"right", notes};
    Window* window = Window::Create(client, Text("Window"), 200, 100, 2);
    View& root = *window->GetRootView();
};
