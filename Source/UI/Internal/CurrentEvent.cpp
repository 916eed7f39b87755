#include "UI/Internal/CurrentEvent.h"

#include "UI/Internal/ViewBridge.h"

namespace Kestrin {

namespace {

CurrentEventScope* sInnermost = nullptr;

} // namespace

CurrentEventScope::CurrentEventScope(ViewBridge& bridge, const NativeMouseEvent* mouseDown)
    : fBridge(bridge.shared_from_this())
    , fMouseDown(mouseDown)
    , fOuter(sInnermost) {
    sInnermost = this;
}

CurrentEventScope::~CurrentEventScope() {
    sInnermost = fOuter;
}

const CurrentEventScope* CurrentEventScope::Innermost() {
    return sInnermost;
}

View* CurrentEventView() {
    return sInnermost ? sInnermost->Bridge().GetView() : nullptr;
}

const NativeMouseEvent* CurrentMouseDown() {
    return CurrentEventView() ? sInnermost->MouseDown() : nullptr;
}

NativeView& NativeViewOf(const View& view) {
    return BridgeOf(view).Native();
}

} // namespace Kestrin
