#include "UI/Internal/ViewBridge.h"

#include "UI/DrawingContext.h"
#include "UI/Internal/NativeGeometry.h"
#include "UI/View.h"

#include <algorithm>
#include <utility>

namespace Kestrin {

ViewBridge::ViewBridge(View& view)
    : fKestrinView(&view)
    , fNative(std::make_unique<NativeView>(*this))
    , fContext(std::make_unique<DrawingContext>()) {}

ViewBridge::~ViewBridge() = default;

void ViewBridge::Detach() {
    fKestrinView = nullptr;
    SetMouseHidden(false);
    RemoveFromSuperview();
    while (!fSubviews.empty())
        fSubviews.back()->RemoveFromSuperview();
    fWindow = nullptr;
}

// Tree

void ViewBridge::AddSubview(ViewBridge& child) {
    child.RemoveFromSuperview();
    child.fSuperview = this;
    fSubviews.push_back(&child);
    fNative->AddSubview(*child.fNative);
}

void ViewBridge::RemoveFromSuperview() {
    if (fSuperview)
        std::erase(std::exchange(fSuperview, nullptr)->fSubviews, this);
    fNative->RemoveFromSuperview();
}

ViewBridge& ViewBridge::Root() {
    ViewBridge* root = this;
    while (root->fSuperview)
        root = root->fSuperview;
    return *root;
}

WindowOfViews* ViewBridge::Window() const {
    return const_cast<ViewBridge*>(this)->Root().fWindow;
}

// Place

void ViewBridge::SetFrame(const Rect& frame) {
    fFrame = frame;
    fNative->SetFrame(ToNative(frame));
}

Point ViewBridge::ToRoot(Point point) const {
    for (const ViewBridge* view = this; view->fSuperview; view = view->fSuperview) {
        point.x += view->fFrame.x;
        point.y += view->fFrame.y;
    }
    return point;
}

Point ViewBridge::FromRoot(Point point) const {
    const Point origin = ToRoot({0, 0});
    return {point.x - origin.x, point.y - origin.y};
}

bool ViewBridge::Contains(const Point& point) const {
    return point.x >= 0 && point.y >= 0 && point.x < fFrame.width && point.y < fFrame.height;
}

ViewBridge* ViewBridge::HitTest(const Point& point) {
    if (fHidden || !Contains(point))
        return nullptr;
    for (std::size_t i = fSubviews.size(); i > 0; --i) {
        ViewBridge& child = *fSubviews[i - 1];
        if (ViewBridge* hit = child.HitTest({point.x - child.fFrame.x, point.y - child.fFrame.y}))
            return hit;
    }
    return this;
}

// State

void ViewBridge::SetHidden(bool hidden) {
    if (hidden == fHidden)
        return;
    const Shared keep = Self();
    fHidden = hidden;
    fNative->SetHidden(hidden);
    if (!fSuperview || !fSuperview->IsHiddenOrHasHiddenAncestor())
        TellVisibleStateChanged();
}

bool ViewBridge::IsHiddenOrHasHiddenAncestor() const {
    for (const ViewBridge* view = this; view; view = view->fSuperview) {
        if (view->fHidden)
            return true;
    }
    return false;
}

void ViewBridge::SetEnabled(bool enabled) {
    const Shared keep = Self();
    fEnabled = enabled;
    fNative->SetEnabled(enabled);
}

void ViewBridge::TakeFocus() {
    if (TakesInput() && Window() && !IsHiddenOrHasHiddenAncestor())
        fNative->MakeFirstResponder();
}

void ViewBridge::SetMouseHidden(bool hidden) {
    if (hidden == fMouseHidden)
        return;
    fMouseHidden = hidden;
    if (hidden) {
        fMouseHidePoint = NativeCursor::Position();
        NativeCursor::Hide();
    } else {
        NativeCursor::MoveTo(fMouseHidePoint);
        NativeCursor::Unhide();
    }
}

void ViewBridge::SetAlpha(float alpha) {
    fAlpha = std::clamp(alpha, 0.0f, 1.0f);
    fNative->SetNeedsDisplay();
    RefreshOpacity();
}

float ViewBridge::EffectiveAlpha() const {
    float alpha = 1.0f;
    for (const ViewBridge* view = this; view; view = view->fSuperview)
        alpha *= view->fAlpha;
    return alpha;
}

void ViewBridge::RefreshOpacity() {
    const Shared keep = Self();
    // What is painted with less than full opacity needs what lies beneath.
    fNative->SetOpaque(!Supports(View::kViewFeatureTransparent) && EffectiveAlpha() == 1.0f);
    ForEachSubview([](ViewBridge& child) { child.RefreshOpacity(); });
}

bool ViewBridge::Supports(int feature) const {
    return fKestrinView && fKestrinView->SupportsFeature(static_cast<View::ViewFeature>(feature));
}

} // namespace Kestrin
