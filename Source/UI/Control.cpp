#include "UI/Control.h"

namespace Kestrin {

Control::Control(AccessibleRole role, const UString& name) {
    SetTabStop(true);
    SetAccessibility(role, name);
}

void Control::DoDraw(DrawingContext& context) {
    DrawControl(context);
    if (HasKeyFocus())
        DrawFocusRing(context);
}

void Control::DoClick(const Point&, unsigned int, bool) {
    fPressed = true;
    fInside = true;
    Inval();
}

void Control::DoTrack(const Point& where, unsigned int) {
    if (!fPressed)
        return;
    fInside = Contains(GetLocalRect(), where);
    Inval();
}

void Control::DoMouseUp(unsigned int) {
    // The release reaches a control also when it was disabled meanwhile.
    const bool acts = IsDown() && IsEnabled();
    fPressed = false;
    fInside = false;
    Inval();
    if (acts)
        Act();
}

bool Control::DoTextInput(const UString& text, unsigned int, unsigned char) {
    const bool acts = text == UString(static_cast<unsigned short>(' '));
    if (acts)
        Act();
    return acts;
}

void Control::DoKeyFocusStateChanged(bool) {
    Inval();
}

} // namespace Kestrin
