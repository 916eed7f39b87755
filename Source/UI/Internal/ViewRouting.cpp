// Which view gets an event. Every hook may destroy any view, so each function that calls one holds
// on to the bridges that it goes on with, and asks again for their views.

#include "Commands/RequestHandler.h"
#include "UI/DrawingContext.h"
#include "UI/Internal/CurrentEvent.h"
#include "UI/Internal/KeyInput.h"
#include "UI/Internal/NativeGeometry.h"
#include "UI/Internal/ViewBridge.h"
#include "UI/View.h"

#include "Platform/UI/NativeMenu.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrin {

namespace {

/// Where an abandoned press is dragged to before it ends: outside of every view.
constexpr Point kNowhere{-32768, -32768};

Point PointOf(const NativeMouseEvent& event) {
    return FromNative(event.where);
}

/// Three steps a notch, away from zero, so that the smallest movement counts.
int WheelSteps(double delta) {
    constexpr double kMost = 1 << 20;
    const double steps = std::clamp(delta * 3, -kMost, kMost);
    return static_cast<int>(steps > 0 ? std::ceil(steps) : std::floor(steps));
}

bool MovesFocus(const NativeKeyEvent& event) {
    const std::u16string& key = event.charactersIgnoringModifiers;
    const bool tab = key.size() == 1 && (key[0] == kNativeTab || key[0] == kNativeBackTab);
    return tab && !(event.modifierFlags & (kNativeControl | kNativeOption | kNativeCommand));
}

/// A view's context is live during its draw event and never beyond, whatever DoDraw throws.
class LiveContext {
public:
    LiveContext(DrawingContext& context, CGContext& target, float alpha)
        : fContext(context) {
        fContext.SetDrawEventContextInfo(&target, alpha);
        fContext.SetAlpha(1.0f);
    }
    ~LiveContext() { fContext.SetDrawEventContextInfo(nullptr, 1.0f); }
    LiveContext(const LiveContext&) = delete;
    LiveContext& operator=(const LiveContext&) = delete;

private:
    DrawingContext& fContext;
};

} // namespace

/// The point of this view's own coordinates in those of another view of the same tree.
Point ViewBridge::PointIn(const ViewBridge& other, Point point) const {
    return other.FromRoot(ToRoot(point));
}

// Press, drag, release

/// The view that a press is handed on to where this one does not take clicks: the topmost view
/// beneath at that point, else the superview; null at the root.
ViewBridge::Shared ViewBridge::Beneath(const Point& point) {
    if (!fSuperview)
        return nullptr;
    const auto& siblings = fSuperview->fSubviews;
    const Point there{point.x + fFrame.x, point.y + fFrame.y};
    for (auto next = std::find(siblings.begin(), siblings.end(), this); next != siblings.begin();) {
        const Rect& frame = (*--next)->fFrame;
        if (ViewBridge* hit = (*next)->HitTest({there.x - frame.x, there.y - frame.y}))
            return hit->Self();
    }
    return fSuperview->Self();
}

/// The first view from this one downwards that takes clicks; null where none does.
ViewBridge::Shared ViewBridge::ClickTaker(const Point& point) {
    Shared view = Self();
    while (view && !view->Supports(View::kViewFeatureClicks))
        view = view->Beneath(PointIn(*view, point));
    return view;
}

/// A press takes the focus to where it is, which ends an edit elsewhere in the window. False where
/// that opened a dialog, which took the release.
bool ViewBridge::BeginPress() {
    fPress = Press{};
    if (!fClickThrough)
        TakeFocus();
    return !fPress.lost;
}

void ViewBridge::HandleMouseDown(const NativeMouseEvent& event) {
    const Shared keep = Self();
    if (!BeginPress())
        return;
    const Shared taker = ClickTaker(PointOf(event));
    if (!taker || !taker->TakesInput())
        return;
    Click(*taker, event);
    if (fPress.lost)
        AbandonPress();
}

void ViewBridge::Click(ViewBridge& taker, const NativeMouseEvent& event) {
    const Point where = PointIn(taker, PointOf(event));
    NativeMouseEvent there = event;
    there.where = ToNative(where);
    const CurrentEventScope scope(taker, &there);
    fPress.taker = taker.weak_from_this();
    taker.fKestrinView->DoClick(where, ModifiersOf(event.modifierFlags), event.clickCount == 2);
    taker.fMouseDown = true;
}

void ViewBridge::HandlePressLost() {
    const Shared keep = Self();
    fPress.lost = true;
    // While DoClick runs, HandleMouseDown sees to it afterwards.
    const Shared taker = fPress.taker.lock();
    if (taker && taker->fMouseDown)
        AbandonPress();
}

/// Ends the press of a view so that it does not act and is not left pressed.
void ViewBridge::AbandonPress() {
    const Shared taker = fPress.taker.lock();
    if (!taker)
        return;
    taker->SendTrack(kNowhere, 0);
    taker->SendMouseUp(0);
    fPress.taker.reset();
}

void ViewBridge::SendTrack(const Point& where, unsigned int modifiers) {
    if (fKestrinView)
        fKestrinView->DoTrack(where, modifiers);
}

void ViewBridge::SendMouseUp(unsigned int modifiers) {
    if (fKestrinView)
        fKestrinView->DoMouseUp(modifiers);
    fMouseDown = false;
}

void ViewBridge::HandleMouseDragged(const NativeMouseEvent& event) {
    const Shared keep = Self();
    HandleMouseMoved(event);
    const unsigned int modifiers = ModifiersOf(event.modifierFlags);
    const Shared taker = fPress.taker.lock();
    SendTrack(PointOf(event), modifiers);
    // A press that was handed on has its drag there too.
    if (taker && taker != keep)
        taker->SendTrack(PointIn(*taker, PointOf(event)), modifiers);
    if (fClickThrough && !std::exchange(fPress.dragged, true))
        fNative->StartWindowMove();
}

void ViewBridge::HandleMouseUp(const NativeMouseEvent& event) {
    const Shared keep = Self();
    const Shared pressed = std::exchange(fPress, Press{}).taker.lock();
    if (const Shared taker = pressed ? pressed : ClickTaker(PointOf(event)))
        taker->SendMouseUp(ModifiersOf(event.modifierFlags));
    fMouseDown = false;
}

// Pointer and wheel

void ViewBridge::HandleMouseMoved(const NativeMouseEvent& event) {
    const Shared root = Root().Self();
    root->DispatchPointer(ToRoot(PointOf(event)), ModifiersOf(event.modifierFlags), true);
}

/// Tells the views whose rectangles hold the point, also those beneath others, and those that the
/// pointer has left since.
void ViewBridge::DispatchPointer(const Point& point, unsigned int modifiers, bool isOverParent) {
    const bool inside = isOverParent && !fHidden && Contains(point);
    if (!std::exchange(fHasPointer, inside) && !inside)
        return;
    ForEachSubview([&](ViewBridge& child) {
        child.DispatchPointer({point.x - child.fFrame.x, point.y - child.fFrame.y}, modifiers,
                              inside);
    });
    if (Supports(View::kViewFeatureMouseTracking))
        fKestrinView->DoMousePosition(inside ? View::kMousePosInside : View::kMousePosExited, point,
                                      modifiers);
}

void ViewBridge::HandleMouseEntered(const NativeMouseEvent& event) {
    if (!fHasPointer)
        HandleMouseMoved(event);
}

void ViewBridge::HandleMouseExited(const NativeMouseEvent& event) {
    // What leaves the root leaves the window, wherever it seems to be.
    const Shared root = Root().Self();
    root->DispatchPointer(ToRoot(PointOf(event)), ModifiersOf(event.modifierFlags),
                          fSuperview != nullptr);
}

void ViewBridge::HandleScrollWheel(const NativeMouseEvent& event) {
    Shared view = Self();
    while (view && !view->Supports(View::kViewFeatureMouseTracking))
        view = view->fSuperview ? view->fSuperview->Self() : nullptr;
    if (view)
        view->fKestrinView->DoMouseWheel(PointIn(*view, PointOf(event)),
                                         ModifiersOf(event.modifierFlags), WheelSteps(event.deltaX),
                                         WheelSteps(event.deltaY));
}

// Keys and focus

bool ViewBridge::HandleKeyDown(const NativeKeyEvent& event) {
    const CurrentEventScope scope(*this);
    const KeyInput key = TakeKeyInput(event);
    if (SendKey(key))
        return true;
    if (MovesFocus(event))
        return false;
    if (WindowOfViews* window = Window())
        window->TakeKey(key);
    return true;
}

/// Answers whether the view took the key.
bool ViewBridge::SendKey(const KeyInput& key) {
    return TakesInput() && fKestrinView->DoTextInput(key.text, key.modifiers, key.keyCode);
}

void ViewBridge::HandleFirstResponderChanged(bool isFirstResponder) {
    const Shared keep = Self();
    if (fKestrinView)
        fKestrinView->DoKeyFocusStateChanged(isFirstResponder);
}

/// To a view, being pressed by an assistive technology is being pressed with the space bar.
void ViewBridge::HandleAccessibilityPress() {
    const CurrentEventScope scope(*this);
    if (BeginPress())
        SendKey({" "_u});
}

void ViewBridge::HandleAccessibilityChoice(const NativeMenuItem& item) {
    const CurrentEventScope scope(*this);
    if (BeginPress() && TakesInput() && fMenu)
        fMenu->HandleCommand(CommandSpecifier::FromCode(item.Tag()));
}

// Visibility and drawing

/// Tells the view and all within it that are not hidden by themselves.
void ViewBridge::TellVisibleStateChanged() {
    if (fKestrinView)
        fKestrinView->DoVisibleStateChanged();
    ForEachSubview([](ViewBridge& child) {
        if (!child.fHidden)
            child.TellVisibleStateChanged();
    });
}

void ViewBridge::HandleDraw(CGContext& target) {
    const Shared keep = Self();
    if (!fKestrinView)
        return;
    const LiveContext live(*fContext, target, EffectiveAlpha());
    fKestrinView->DoDraw(*fContext);
}

} // namespace Kestrin
