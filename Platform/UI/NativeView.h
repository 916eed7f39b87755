#pragma once

#include "Platform/UI/CGGeometry.h"
#include "Platform/UI/NativeEvents.h"

#include <memory>
#include <string>

class CGContext;

namespace Kestrin {

class NativeMenu;
class NativeMenuItem;

/// What assistive technologies are told that a view is.
enum class AccessibleRole {
    kNone, ///< a part of the layout, of no interest by itself
    kButton,
    kPopUpButton,
    kStaticText,
    kTextField,
    kNumberField, ///< a text field for a whole number
    kGroup,
};

/// All that assistive technologies are told about a view.
struct AccessibleDescription {
    AccessibleRole role = AccessibleRole::kNone;
    std::string name; ///< UTF-8
    /// What a kNumberField takes.
    int minimum = 0;
    int maximum = 0;
    /// The items of a kPopUpButton; the text of the one that is on is the view's value.
    std::shared_ptr<const NativeMenu> menu = nullptr;
};

/// What happens to a native view, told to the framework. All points are in the view's own
/// coordinates, y down from its top. The client may destroy, remove or hide the view in any of
/// these; the native side touches neither afterwards.
class NativeViewClient {
public:
    /// The primary button went down in the view. The native side does not move the focus itself.
    virtual void HandleMouseDown(const NativeMouseEvent&) = 0;

    /// The pointer moved with the primary button down after HandleMouseDown, wherever it is now.
    virtual void HandleMouseDragged(const NativeMouseEvent&) = 0;

    /// The button of HandleMouseDown came up, wherever the pointer is now.
    virtual void HandleMouseUp(const NativeMouseEvent&) = 0;

    /// The press of the last HandleMouseDown has no release to come: a modal window opened, the
    /// view was hidden or removed, or something else took the release. Comes inside HandleMouseDown
    /// where it happens there, and inside an assistive technology's press or choice where a modal
    /// window opens there.
    virtual void HandlePressLost() = 0;

    /// The pointer moved over the view with no button down.
    virtual void HandleMouseMoved(const NativeMouseEvent&) = 0;

    /// The pointer came in or went out, also by moving onto or off a view above.
    virtual void HandleMouseEntered(const NativeMouseEvent&) = 0;
    virtual void HandleMouseExited(const NativeMouseEvent&) = 0;

    /// The wheel turned over the view.
    virtual void HandleScrollWheel(const NativeMouseEvent&) = 0;

    /// A key went down while the view was first responder. Answers whether somebody took the key; a
    /// Tab that nobody took moves the focus.
    virtual bool HandleKeyDown(const NativeKeyEvent&) = 0;

    /// The view became or stopped being the first responder of its window. Activating another
    /// window, an open menu or an alert does not change the first responder.
    virtual void HandleFirstResponderChanged(bool isFirstResponder) = 0;

    /// An assistive technology pressed the view. It is not kept waiting meanwhile.
    virtual void HandleAccessibilityPress() = 0;

    /// The same with an item of the described menu, whether that is open or not; it is closed now.
    virtual void HandleAccessibilityChoice(const NativeMenuItem& item) = 0;

    /// Draw into `context`, whose origin is the view's top left corner, y down, clipped to what
    /// needs drawing. The context lives only for the call.
    virtual void HandleDraw(CGContext& context) = 0;

protected:
    ~NativeViewClient() = default;
};

/// A rectangle of a window on the screen. It draws nothing of its own and decides nothing: which
/// view an event is for, what hidden ancestors mean, where a frame lies is its client's business.
/// Everything it is told stays with it while it is removed and added elsewhere.
class NativeView {
public:
    struct Data;

    /// A shown view with an empty frame, in no superview. The client outlives the view.
    explicit NativeView(NativeViewClient& client);

    /// Leaves its superview. Views inside it are set free, not destroyed.
    ~NativeView();
    NativeView(const NativeView&) = delete;
    NativeView& operator=(const NativeView&) = delete;

    // Tree

    /// Puts `child` on top of the other subviews, taking it from where it was.
    void AddSubview(NativeView& child);
    void RemoveFromSuperview();

    // Appearance

    /// In the superview's coordinates, points. A negative extent shows nothing.
    void SetFrame(const CGRect& frame);
    /// The focus does not stay in what is hidden, nor go on to another view.
    void SetHidden(bool hidden);

    /// True promises that HandleDraw paints every pixel, so that nothing beneath needs drawing.
    void SetOpaque(bool opaque);

    /// Plain UTF-8 text; empty for none.
    void SetToolTip(const std::string& text);

    /// Marks the whole view for drawing at the next turn of the event loop.
    void SetNeedsDisplay();

    /// Draws what is visible of the view before returning.
    void Display();

    // Events and focus

    /// A disabled view gives up the focus and is no Tab stop; assistive technologies are told.
    /// Which events reach it is the client's business. A text field inside goes by its host.
    void SetEnabled(bool enabled);

    /// Whether the Tab key stops here. The order is that of being added.
    void SetTabStop(bool stop);

    /// Gives the view the focus of its window. A view in no window ignores it.
    void MakeFirstResponder();
    bool IsFirstResponder() const;

    /// Moves the focus of the view's window to the next tab stop.
    void SelectNextKeyView();

    /// Lets the pointer, whose button is down, carry the whole window.
    void StartWindowMove();

    // Coordinates: between the view and the screen, y down from the top of the window's screen.
    // Where the display server tells no positions, the window stands for the screen.

    CGPoint ToScreen(const CGPoint& point) const;
    CGPoint FromScreen(const CGPoint& point) const;

    // Accessibility

    /// A text field inside the view is described by it in its place.
    void SetAccessibility(AccessibleDescription description);
    /// Tells assistive technologies that another item of the described menu is on.
    void TellAccessibleValueChanged();

    /// For the platform's own files.
    Data& GetData() const { return *fData; }

private:
    std::unique_ptr<Data> fData;
};

/// The pointer of the screen, which all views share.
namespace NativeCursor {

/// Hiding counts: each Hide needs its Unhide.
void Hide();
void Unhide();

/// Global position in points, y down. Some display servers know it only over own windows.
CGPoint Position();

/// Some display servers forbid this; then nothing happens.
void MoveTo(const CGPoint& position);

} // namespace NativeCursor

} // namespace Kestrin
