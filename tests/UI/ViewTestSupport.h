#pragma once

#include "UI/DrawingContext.h"
#include "UI/View.h"
#include "UI/Window.h"

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// What the tests of views and windows share: views that note what is told to them.

using Kestrin::Point;
using Kestrin::Rect;
using Kestrin::View;
using Kestrin::Window;

inline UString Text(const std::string& utf8) {
    return UString(utf8, UString::kUTF8);
}

/// Notes every hook in a list that may be shared, each as a short text that begins with the view's
/// name; `during` is called inside each hook with that text.
class NotingView : public View {
public:
    explicit NotingView(std::string name, std::vector<std::string>& notes)
        : fName(std::move(name))
        , fNotes(notes) {}

    bool takesClicks = true;
    bool tracksMouse = false;
    bool takesKeys = false;
    std::function<void(const std::string& note)> during;

    bool SupportsFeature(Kestrin::ViewFeature feature) override {
        if (feature == Kestrin::kViewFeatureClicks)
            return takesClicks;
        if (feature == Kestrin::kViewFeatureMouseTracking)
            return tracksMouse;
        return View::SupportsFeature(feature);
    }
    void DoClick(const Point& at, unsigned int modifiers, bool doubleClick) override {
        Note((doubleClick ? "double click " : "click ") + Words(at, modifiers));
    }
    void DoTrack(const Point& at, unsigned int modifiers) override {
        Note(at.x < -1000 ? "track away" : "track " + Words(at, modifiers));
    }
    void DoMouseUp(unsigned int) override { Note("up"); }
    void DoMousePosition(Kestrin::MousePosInfo info, const Point& at, unsigned int m) override {
        Note((info == Kestrin::kMousePosInside ? "inside " : "exited ") + Words(at, m));
    }
    void DoMouseWheel(const Point& at, unsigned int m, int dx, int dy) override {
        Note("wheel " + Words(at, m) + " by " + std::to_string(dx) + "," + std::to_string(dy));
    }
    bool DoTextInput(const UString& text, unsigned int m, unsigned char key) override {
        const bool takes = takesKeys;
        Note("key '" + text.utf8_str() + "' " + std::to_string(m) + " " + std::to_string(key));
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
    void Note(const std::string& what) {
        const std::string note = fName + " " + what;
        fNotes.push_back(note);
        if (const auto call = during)
            call(note);
    }

    std::string fName;
    std::vector<std::string>& fNotes;
};

/// A client that notes what its window reports.
class NotingClient final : public Window::WindowEventClient {
public:
    explicit NotingClient(std::vector<std::string>& notes)
        : fNotes(notes) {}

    std::function<void(const std::string& note)> during;
    Rect frame;

    void WindowClosedNotification(Window*) override { Note("closed"); }
    bool DoTextInput(const UString& text, unsigned int m, unsigned char key) override {
        Note("window key '" + text.utf8_str() + "' " + std::to_string(m) + " " +
             std::to_string(key));
        return true;
    }
    void WindowActivationChanged(Window*, bool active) override {
        Note(active ? "active" : "inactive");
    }
    void WindowVisiblilityChanged(Window*, bool visible) override {
        Note(visible ? "visible" : "invisible");
    }
    void WindowSizeChanged(Window*, Rect whole) override {
        frame = whole;
        Note("resized");
    }

private:
    void Note(const std::string& note) {
        fNotes.push_back(note);
        if (const auto call = during)
            call(note);
    }

    std::vector<std::string>& fNotes;
};
