#pragma once

#include "Strings/UString.h"
#include "UI/Color.h"
#include "UI/Geometry.h"
#include "UI/KeyCodes.h"
#include "UI/TextStyle.h"

#include "Platform/UI/NativeView.h"

#include <memory>
#include <vector>

namespace Kestrin {

class DrawingContext;
class DynamicMenu;
struct Pasteboard;
class ViewBridge;
class WindowData;

/// A rectangle of a window that draws itself and takes events. It has the origin at its top left
/// and y growing downward; its own rectangle is in the coordinates of its parent. Views overlap in
/// the order in which they were placed.
///
/// A view lives before it is placed and after it is removed; then it has no parent and no window,
/// conversions answer (0, 0) and focus requests do nothing. Whether it is enabled and shown, its
/// opacity and the like stay with it. A view does not own its children and may go before them.
///
/// Any hook may destroy, remove or hide its own view or another one.
class View {
public:
    /// What a view can be asked about itself.
    enum ViewFeature : int {
        /// It takes the press and release of the mouse; otherwise the view beneath does.
        kViewFeatureClicks = 0,
        /// It is a native text field.
        kViewFeatureTextEdit = 1,
        /// It wants to hear of the pointer's position and of the wheel.
        kViewFeatureMouseTracking = 2,
        /// It does not paint every pixel of its rectangle.
        kViewFeatureTransparent = 4,
    };

    /// Where the pointer is, for DoMousePosition: in the view's rectangle, whatever lies above it,
    /// or no longer.
    enum MousePosInfo : int { kMousePosInside = 0, kMousePosExited = 1 };

    View();
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    // Place in the tree

    /// Puts the view on top of the parent's other children. A view placed elsewhere is moved.
    virtual void PlaceInView(View* parent, float x, float y);
    virtual void PlaceInView(View* parent, const Point& where);
    virtual void RemoveFromSuperview();

    // Services. Forms that take a Point or a Size call the float forms.

    /// Empty text for none. The text crosses as HandOver says, so that text beyond ASCII is cut.
    virtual void SetToolTip(const UString& text);
    virtual void ShowHide(bool show);
    /// True takes the focus of the window; false passes it on to the next control. A view that is
    /// disabled or not seen neither takes the focus nor keeps it.
    virtual void EnableKeyFocus(bool focus);
    /// A disabled view takes no press and no keys.
    virtual void Enable(bool enable);
    /// Redraws nothing. A negative extent moves the origin by it and stays negative; such a view
    /// shows nothing.
    virtual void SetRect(const Rect& rect);
    virtual Rect GetRect() const;
    /// Neither the view nor a parent is hidden.
    virtual bool IsVisible() const;
    /// Whether the view's window is the one that takes the keys.
    virtual bool IsViewActive() const;
    virtual bool IsEnabled() const;
    /// Hides the pointer, or shows it again where it was hidden.
    virtual void ShowMouse(bool show);
    /// To the screen, y down from the top of the window's screen. Where the display server tells no
    /// positions, the window stands for the screen.
    virtual Point ViewToScreen(const Point& point) const;
    /// To the window's content area, y down from its top.
    virtual Point ViewToWindow(const Point& point) const;
    /// Marks the view for drawing soon.
    virtual void Inval();
    virtual void DrawNow();
    /// On: the view does not take the focus and a drag in it moves the window.
    virtual void EnableClickThrough(bool clickThrough);
    /// Moving and resizing redraws the parent as well.
    virtual void MoveTo(float x, float y);
    virtual void MoveTo(const Point& where);
    virtual void SetDimensions(float width, float height);
    virtual void SetDimensions(const Size& size);
    virtual Size GetDimensions() const;
    virtual Rect GetLocalRect() const;
    virtual Point GetOrigin() const;
    /// The font for StringWidth and for what DoDraw draws first.
    virtual void SetupFont(FontID font, unsigned int size, const RGBAColor& color);
    virtual float StringWidth(const UString& text) const;

    // Hooks. Points are in the view's coordinates, `modifiers` are Modifiers bits.

    /// True for clicks and transparent. Asked again whenever the view is placed or moved.
    virtual bool SupportsFeature(ViewFeature feature);
    /// Draw everything; the context lives for this call only.
    virtual void DoDraw(DrawingContext& context);
    /// A key, for the view that has the focus. `text` is what the key types, `keyCode` a KeyCode.
    /// Where this answers false the window's client gets the key.
    virtual bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char keyCode);
    virtual void DoMousePosition(MousePosInfo info, const Point& where, unsigned int modifiers);
    /// dx and dy are 3 for a notch, never 0 for a movement.
    virtual void DoMouseWheel(const Point& where, unsigned int modifiers, int dx, int dy);
    virtual void DoClick(const Point& where, unsigned int modifiers, bool doubleClick);
    /// The pointer moved while the button is down, wherever to.
    virtual void DoTrack(const Point& where, unsigned int modifiers);
    /// The button came up, wherever the pointer is. A press whose release goes elsewhere ends with
    /// a DoTrack far outside and a DoMouseUp, so that it does nothing and leaves nothing pressed.
    virtual void DoMouseUp(unsigned int modifiers);
    virtual void DoVisibleStateChanged();
    virtual void DoKeyFocusStateChanged(bool hasFocus);
    virtual void DoActiveStateChanged();
    virtual bool DoDragDestination(const Pasteboard& pasteboard, std::vector<UString>& types,
                                   MousePosInfo info, const Point& where, unsigned int modifiers);
    virtual bool PerformDragOperation(const Pasteboard& pasteboard, const Point& where);

    // For keyboards and assistive technologies

    /// Whether the Tab key stops here while the view is enabled. Views start without.
    void SetTabStop(bool tabStop);
    bool HasKeyFocus() const;
    void SetAccessibility(AccessibleRole role, const UString& name);
    void SetAccessibleNumberField(const UString& name, int minimum, int maximum);
    /// A pop-up button with the items of the menu, whose current item is its value. The menu is not
    /// owned and lives as long as the view can be seen.
    void SetAccessiblePopUp(const UString& name, DynamicMenu& menu);
    /// To be called when that menu has another current item.
    void TellAccessibleValueChanged();

    /// From 0 (nothing is seen) to 1; multiplied with that of all parents.
    void SetOpacity(float opacity);

private:
    class ViewData;
    friend class WindowData;
    friend ViewBridge& BridgeOf(const View& view);

    void AfterFrameChange();

    std::unique_ptr<ViewData> fData;
};

} // namespace Kestrin
