#include "UI/Internal/CurrentEvent.h"

#include "UI/Internal/ViewBridge.h"

namespace Kestrin {

CurrentEventScope* CurrentEventScope::sInnermost = nullptr;

CurrentEventScope::CurrentEventScope(ViewBridge& bridge, const NativeMouseEvent* mouseDown)
    : fBridge(bridge.shared_from_this())
    , fMouseDown(mouseDown)
    , fOuter(sInnermost) {
    sInnermost = this;
}

CurrentEventScope::~CurrentEventScope() {
    sInnermost = fOuter;
}

View* CurrentEventView() {
    const CurrentEventScope* const scope = CurrentEventScope::sInnermost;
    return scope ? scope->fBridge->GetView() : nullptr;
}

const NativeMouseEvent* CurrentMouseDown() {
    return CurrentEventView() ? CurrentEventScope::sInnermost->fMouseDown : nullptr;
}

NativeView& NativeViewOf(const View& view) {
    return BridgeOf(view).Native();
}

} // namespace Kestrin
