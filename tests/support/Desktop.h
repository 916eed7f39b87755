#pragma once

#include "UI/Geometry.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A person at the desktop that a test runs on: what stands on the screen, and the real keyboard
/// and mouse. For tests that run ON_DISPLAY.
namespace Desktop {

using Kestrin::Rect;

/// The pop-up menu that is open. Rectangles are on the screen.
struct Menu {
    struct Item {
        std::string text; ///< as it is drawn
        bool isChecked = false;
        bool isEnabled = true;
        Rect place;
    };
    std::vector<Item> items;
    int highlighted = -1;
    Rect place;
};
std::optional<Menu> OpenMenu();

/// The alert that is open.
struct Alert {
    std::string headline;
    bool isHeadlineWhole = false; ///< there is room for all of it
    std::string text;
    std::vector<std::string> buttons; ///< from left to right
    std::string focused;              ///< the button that has the keyboard focus and takes Return
    bool isCritical = false;
    Rect place;
};
std::optional<Alert> OpenAlert();

Rect Screen();

/// Runs xdotool with these arguments; a failure of it is the test's.
void Input(const std::string& arguments);

/// Hands the keys (names as xdotool knows them) to whatever has the focus, one after the other.
void Type(const std::string& keys);
/// Moves the pointer to the middle.
void PointAt(const Rect& place);

/// Steps that are taken while the code under test waits in an event loop of its own. Each step
/// waits until its condition holds and then acts; when one waits for too long an alarm ends the
/// program.
class Script {
public:
    Script();
    ~Script();
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    void When(std::function<bool()> condition, std::function<void()> action);
    void WhenMenuIsOpen(std::function<void(const Menu&)> action);
    void WhenHighlighted(int item, std::function<void()> action);
    void WhenAlertIsOpen(std::function<void(const Alert&)> action);

    /// Handles events until all steps were taken.
    void Play();

private:
    using Step = std::pair<std::function<bool()>, std::function<void()>>;

    void Poll();
    bool IsDone() const { return fSteps.empty() && !fIsActing; }

    std::deque<Step> fSteps;
    bool fIsActing = false;
    std::shared_ptr<void> fTimer;
};

} // namespace Desktop
