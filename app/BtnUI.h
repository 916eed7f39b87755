#pragma once

#include "Strings/UString.h"
#include "UI/Path.h"
#include "UI/View.h"

#include "app/Handler.h"

/// A pill-shaped push button, 22 points high. It sends its command when the mouse is released over
/// it, or when Space or Return is pressed while it has the keyboard focus.
class BtnUI : public Kestrin::View {
public:
    /// `handler` may be null: the button then sends nothing. `width` in points.
    BtnUI(const UString& caption, Handler* handler, unsigned int command, float width);

    // What happens to it
    void DoDraw(Kestrin::DrawingContext& context) override;
    void DoClick(const Kestrin::Point& where, unsigned int modifiers, bool doubleClick) override;
    void DoTrack(const Kestrin::Point& where, unsigned int modifiers) override;
    void DoMouseUp(unsigned int modifiers) override;
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char key) override;
    void DoKeyFocusStateChanged(bool hasFocus) override;

private:
    void SendCommand();

    Handler* fHandler;
    unsigned int fCommand;
    UString fCaption;
    bool fPressed = false;
    bool fInside = false;
    Kestrin::Path fOutline;
};
