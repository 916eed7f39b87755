#include "UI/View.h"

#include "UI/DrawingContext.h"
#include "UI/DynamicMenu.h"
#include "UI/Internal/NativeGeometry.h"
#include "UI/Internal/TextHandOver.h"
#include "UI/Internal/ViewBridge.h"

namespace Kestrin {

/// The view's hold on its native view, which leaves its superview with it.
class View::ViewData {
public:
    explicit ViewData(View& view)
        : fBridge(std::make_shared<ViewBridge>(view)) {}
    virtual ~ViewData() { fBridge->Detach(); }
    ViewData(const ViewData&) = delete;
    ViewData& operator=(const ViewData&) = delete;

    ViewBridge& Bridge() const { return *fBridge; }

private:
    std::shared_ptr<ViewBridge> fBridge;
};

ViewBridge& BridgeOf(const View& view) {
    return view.fData->Bridge();
}

View::View()
    : fData(std::make_unique<ViewData>(*this)) {}

View::~View() = default;

// Place in the tree

void View::PlaceInView(View* parent, float x, float y) {
    BridgeOf(*parent).AddSubview(BridgeOf(*this));
    MoveTo(x, y);
}

void View::PlaceInView(View* parent, const Point& where) {
    PlaceInView(parent, where.x, where.y);
}

void View::RemoveFromSuperview() {
    BridgeOf(*this).RemoveFromSuperview();
}

// Appearance

void View::SetToolTip(const UString& text) {
    BridgeOf(*this).Native().SetToolTip(HandOver(text));
}

void View::ShowHide(bool show) {
    BridgeOf(*this).SetHidden(!show);
}

bool View::IsVisible() const {
    return !BridgeOf(*this).IsHiddenOrHasHiddenAncestor();
}

void View::SetOpacity(float opacity) {
    BridgeOf(*this).SetAlpha(opacity);
}

void View::Inval() {
    BridgeOf(*this).Native().SetNeedsDisplay();
}

void View::DrawNow() {
    BridgeOf(*this).Native().Display();
}

// State

void View::EnableKeyFocus(bool focus) {
    if (focus)
        BridgeOf(*this).TakeFocus();
    else
        BridgeOf(*this).Native().SelectNextKeyView();
}

bool View::HasKeyFocus() const {
    return BridgeOf(*this).Native().IsFirstResponder();
}

void View::Enable(bool enable) {
    Inval();
    // Last, since losing the focus may be the view's end.
    BridgeOf(*this).SetEnabled(enable);
}

bool View::IsEnabled() const {
    return BridgeOf(*this).IsEnabled();
}

bool View::IsViewActive() const {
    const WindowOfViews* window = BridgeOf(*this).Window();
    return window && window->IsKeyWindow();
}

void View::ShowMouse(bool show) {
    BridgeOf(*this).SetMouseHidden(!show);
}

void View::EnableClickThrough(bool clickThrough) {
    BridgeOf(*this).SetClickThrough(clickThrough);
}

void View::SetTabStop(bool tabStop) {
    BridgeOf(*this).Native().SetTabStop(tabStop);
}

void View::SetAccessibility(AccessibleRole role, const UString& name) {
    BridgeOf(*this).Native().SetAccessibility({role, name.utf8_str()});
}

void View::SetAccessibleNumberField(const UString& name, int minimum, int maximum) {
    BridgeOf(*this).Native().SetAccessibility(
        {AccessibleRole::kNumberField, name.utf8_str(), minimum, maximum});
}

void View::SetAccessiblePopUp(const UString& name, DynamicMenu& menu) {
    BridgeOf(*this).SetMenu(&menu);
    BridgeOf(*this).Native().SetAccessibility(
        {AccessibleRole::kPopUpButton, name.utf8_str(), 0, 0, menu.GetMenu().GetNativeMenu()});
}

void View::TellAccessibleValueChanged() {
    BridgeOf(*this).Native().TellAccessibleValueChanged();
}

// Geometry

void View::SetRect(const Rect& rect) {
    // Only the origin is set right; the extent stays as the caller gave it.
    const float x = rect.width < 0 ? rect.x + rect.width : rect.x;
    const float y = rect.height < 0 ? rect.y + rect.height : rect.y;
    BridgeOf(*this).SetFrame({x, y, rect.width, rect.height});
    BridgeOf(*this).RefreshOpacity();
}

Rect View::GetRect() const {
    return BridgeOf(*this).Frame();
}

void View::MoveTo(float x, float y) {
    const Rect frame = GetRect();
    BridgeOf(*this).SetFrame({x, y, frame.width, frame.height});
    AfterFrameChange();
}

void View::MoveTo(const Point& where) {
    MoveTo(where.x, where.y);
}

void View::SetDimensions(float width, float height) {
    const Rect frame = GetRect();
    BridgeOf(*this).SetFrame({frame.x, frame.y, width, height});
    AfterFrameChange();
}

void View::SetDimensions(const Size& size) {
    SetDimensions(size.width, size.height);
}

void View::AfterFrameChange() {
    Inval();
    const ViewBridge* parent = BridgeOf(*this).Superview();
    if (parent && parent->GetView())
        parent->GetView()->Inval();
    BridgeOf(*this).RefreshOpacity();
}

Size View::GetDimensions() const {
    const Rect rect = GetRect();
    return {rect.width, rect.height};
}

Rect View::GetLocalRect() const {
    const Size size = GetDimensions();
    return {0, 0, size.width, size.height};
}

Point View::GetOrigin() const {
    const Rect rect = GetRect();
    return {rect.x, rect.y};
}

Point View::ViewToScreen(const Point& point) const {
    const ViewBridge& bridge = BridgeOf(*this);
    if (!bridge.Window())
        return {};
    return FromNative(bridge.Native().ToScreen(ToNative(point)));
}

Point View::ViewToWindow(const Point& point) const {
    const ViewBridge& bridge = BridgeOf(*this);
    return bridge.Window() ? bridge.ToRoot(point) : Point{};
}

// Text

void View::SetupFont(FontID font, unsigned int size, const RGBAColor& color) {
    BridgeOf(*this).Context().SetupFont(font, size, color);
}

float View::StringWidth(const UString& text) const {
    return BridgeOf(*this).Context().StringWidth(text);
}

// Hooks

bool View::SupportsFeature(ViewFeature feature) {
    return feature == kViewFeatureClicks || feature == kViewFeatureTransparent;
}

void View::DoDraw(DrawingContext&) {}

bool View::DoTextInput(const UString&, unsigned int, unsigned char) {
    return false;
}

void View::DoMousePosition(MousePosInfo, const Point&, unsigned int) {}

void View::DoMouseWheel(const Point&, unsigned int, int, int) {}

void View::DoClick(const Point&, unsigned int, bool) {}

void View::DoTrack(const Point&, unsigned int) {}

void View::DoMouseUp(unsigned int) {}

void View::DoVisibleStateChanged() {}

void View::DoKeyFocusStateChanged(bool) {}

void View::DoActiveStateChanged() {}

bool View::DoDragDestination(const Pasteboard&, std::vector<UString>&, MousePosInfo, const Point&,
                             unsigned int) {
    return false;
}

bool View::PerformDragOperation(const Pasteboard&, const Point&) {
    return false;
}

} // namespace Kestrin
