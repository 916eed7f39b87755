#pragma once

#include "Strings/UString.h"
#include "UI/Control.h"
#include "UI/Path.h"

#include "app/Handler.h"

/// A pill-shaped push button, 22 points high. It sends its command when the mouse is released over
/// it, or when Space or Return is pressed while it has the keyboard focus.
class BtnUI : public Kestrin::Control {
public:
    /// `handler` may be null: the button then sends nothing. `width` in points.
    BtnUI(const UString& caption, Handler* handler, unsigned int command, float width);

    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char key) override;

protected:
    void Act() override;
    void DrawControl(Kestrin::DrawingContext& context) override;
    void DrawFocusRing(Kestrin::DrawingContext& context) override;

private:
    Handler* fHandler;
    unsigned int fCommand;
    UString fCaption;
    Kestrin::Path fOutline;
};
