#pragma once

#include "UI/View.h"

namespace Kestrin {

/// A view that a person presses: with the pointer, which may leave it again before the release,
/// with the space bar while it has the focus, or through an assistive technology. It is a Tab stop
/// and draws itself anew whenever that shows.
class Control : public View {
public:
    /// `name` is what an assistive technology calls it.
    Control(AccessibleRole role, const UString& name);

    // What happens to it
    void DoDraw(DrawingContext& context) override;
    void DoClick(const Point& where, unsigned int modifiers, bool doubleClick) override;
    void DoTrack(const Point& where, unsigned int modifiers) override;
    void DoMouseUp(unsigned int modifiers) override;
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char keyCode) override;
    void DoKeyFocusStateChanged(bool hasFocus) override;

protected:
    /// The control was pressed: a press has ended inside it, or a key stands for one. It may be
    /// destroyed by this.
    virtual void Act() = 0;
    virtual void DrawControl(DrawingContext& context) = 0;
    /// Drawn upon the control while it has the keyboard focus.
    virtual void DrawFocusRing(DrawingContext& context) = 0;

    /// Whether a release would make it act now.
    bool IsDown() const { return fPressed && fInside; }

private:
    bool fPressed = false;
    bool fInside = false;
};

} // namespace Kestrin
