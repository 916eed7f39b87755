#pragma once

#include "Platform/UI/NativeEvents.h"

#include <memory>

namespace Kestrin {

class NativeView;
class View;
class ViewBridge;

/// The view whose mouse-down, key or press by an assistive technology is being handled; null when
/// there is none or it died meanwhile. What opens a pop-up opens it over this view.
View* CurrentEventView();

/// The mouse-down being handled, in the coordinates of CurrentEventView; null for other events.
const NativeMouseEvent* CurrentMouseDown();

/// The native view beneath a view.
NativeView& NativeViewOf(const View& view);

/// Makes an event of a view the current one for the life of this object, within an outer one.
class CurrentEventScope {
public:
    explicit CurrentEventScope(ViewBridge& bridge, const NativeMouseEvent* mouseDown = nullptr);
    ~CurrentEventScope();
    CurrentEventScope(const CurrentEventScope&) = delete;
    CurrentEventScope& operator=(const CurrentEventScope&) = delete;

private:
    friend View* CurrentEventView();
    friend const NativeMouseEvent* CurrentMouseDown();

    std::shared_ptr<ViewBridge> fBridge;
    const NativeMouseEvent* fMouseDown;
    CurrentEventScope* fOuter;

    static CurrentEventScope* sInnermost;
};

} // namespace Kestrin
