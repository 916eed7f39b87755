#pragma once

#include "UI/Geometry.h"

#include "Platform/UI/NativeView.h"

#include <memory>
#include <vector>

namespace Kestrin {

class DrawingContext;
struct KeyInput;
class RequestHandler;
class View;

/// What views need of the window they stand in.
class WindowOfViews {
public:
    virtual bool IsKeyWindow() const = 0;
    /// Takes a key that the focused view did not.
    virtual void TakeKey(const KeyInput& key) = 0;

protected:
    ~WindowOfViews() = default;
};

/// The framework's side of one native view. It keeps what belongs to the place on the screen rather
/// than to the View: the tree, the frame, the flags and the opacity; and it brings native events to
/// the hooks of the view that they are for. It is shared by the View and by events in flight, so
/// that an event whose view goes meanwhile ends quietly.
class ViewBridge final : public NativeViewClient, public std::enable_shared_from_this<ViewBridge> {
public:
    explicit ViewBridge(View& view);
    ~ViewBridge();

    /// Null once the view is gone.
    View* GetView() const { return fKestrinView; }
    NativeView& Native() const { return *fNative; }
    DrawingContext& Context() const { return *fContext; }

    /// Leaves the tree, sets the subviews free and forgets the view.
    void Detach();

    // Tree

    void AddSubview(ViewBridge& child);
    void RemoveFromSuperview();
    ViewBridge* Superview() const { return fSuperview; }
    /// The window is set for a root; the views within find it there. Null for none.
    void SetWindow(WindowOfViews* window) { fWindow = window; }
    WindowOfViews* Window() const;

    // Place. Frames are in the superview's coordinates.

    void SetFrame(const Rect& frame);
    const Rect& Frame() const { return fFrame; }
    Point ToRoot(Point point) const;
    Point FromRoot(Point point) const;
    /// Whether a point of the view's own coordinates lies in it.
    bool Contains(const Point& point) const;
    /// The topmost shown view at a point of this view's own coordinates, down to the leaves; null
    /// outside.
    ViewBridge* HitTest(const Point& point);

    // State

    void SetHidden(bool hidden);
    bool IsHiddenOrHasHiddenAncestor() const;
    void SetEnabled(bool enabled);
    bool IsEnabled() const { return fEnabled; }
    void SetClickThrough(bool clickThrough) { fClickThrough = clickThrough; }
    void SetMouseHidden(bool hidden);
    /// The menu that an assistive technology's choice is the command of; not owned.
    void SetMenu(RequestHandler* menu) { fMenu = menu; }
    void SetAlpha(float alpha);
    /// The opacity of the view and of all views that it stands in.
    float EffectiveAlpha() const;
    /// Asks the view and those within again whether they paint everything.
    void RefreshOpacity();
    /// Gives the view the focus of its window, if there is one and the view may have it.
    void TakeFocus();

    // Events of the native view

    void HandleMouseDown(const NativeMouseEvent& event) override;
    void HandleMouseDragged(const NativeMouseEvent& event) override;
    void HandleMouseUp(const NativeMouseEvent& event) override;
    void HandlePressLost() override;
    void HandleMouseMoved(const NativeMouseEvent& event) override;
    void HandleMouseEntered(const NativeMouseEvent& event) override;
    void HandleMouseExited(const NativeMouseEvent& event) override;
    void HandleScrollWheel(const NativeMouseEvent& event) override;
    bool HandleKeyDown(const NativeKeyEvent& event) override;
    void HandleFirstResponderChanged(bool isFirstResponder) override;
    void HandleAccessibilityPress() override;
    void HandleAccessibilityChoice(const NativeMenuItem& item) override;
    void HandleDraw(CGContext& context) override;

private:
    /// What became of the press that the native view received.
    struct Press {
        bool lost = false;               ///< no release will come
        bool dragged = false;            ///< the pointer moved since
        std::weak_ptr<ViewBridge> taker; ///< the view whose DoClick was called, until its DoMouseUp
    };

    using Shared = std::shared_ptr<ViewBridge>;

    Shared Self() { return shared_from_this(); }
    ViewBridge& Root();
    bool Supports(int feature) const;
    /// Whether a press or a key may reach the view: it is there and enabled.
    bool TakesInput() const { return fKestrinView && fEnabled; }
    template <typename Call>
    void ForEachSubview(Call call);
    Point PointIn(const ViewBridge& other, Point point) const;
    bool BeginPress();
    Shared Beneath(const Point& point);
    Shared ClickTaker(const Point& point);
    void Click(ViewBridge& taker, const NativeMouseEvent& event);
    void AbandonPress();
    void SendMouseUp(unsigned int modifiers);
    void SendTrack(const Point& where, unsigned int modifiers);
    void DispatchPointer(const Point& point, unsigned int modifiers, bool isOverParent);
    bool SendKey(const KeyInput& key);
    void TellVisibleStateChanged();

    View* fKestrinView;
    ViewBridge* fSuperview = nullptr;
    std::vector<ViewBridge*> fSubviews;
    WindowOfViews* fWindow = nullptr;
    RequestHandler* fMenu = nullptr;
    std::unique_ptr<NativeView> fNative;
    std::unique_ptr<DrawingContext> fContext;
    Rect fFrame;
    CGPoint fMouseHidePoint{};
    float fAlpha = 1.0f;
    bool fHidden = false;
    bool fEnabled = true;
    bool fClickThrough = false;
    bool fMouseHidden = false;
    bool fMouseDown = false;
    bool fHasPointer = false; ///< the pointer was in it when its views last heard of it
    Press fPress;
};

/// In order. Each is held for the whole walk and left out if an earlier call took it away.
template <typename Call>
void ViewBridge::ForEachSubview(Call call) {
    std::vector<Shared> subviews;
    for (ViewBridge* subview : fSubviews)
        subviews.push_back(subview->Self());
    for (const Shared& subview : subviews)
        if (subview->fSuperview == this)
            call(*subview);
}

/// The bridge of a view, which has one for its whole life.
ViewBridge& BridgeOf(const View& view);

} // namespace Kestrin
