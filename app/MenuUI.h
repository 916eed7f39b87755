#pragma once

#include "Strings/UString.h"
#include "UI/Control.h"
#include "UI/DynamicMenu.h"

#include "app/Handler.h"

/// A captioned pop-up, 520 by 25 points: the caption, then a frame with the current item's text and
/// a triangle. It opens on a click in the frame, and on Space, an arrow key or Alt+Down while it
/// has the keyboard focus. Choosing an item, also the current one, makes it the current item and
/// sends 'MENU'.
class MenuUI : public Kestrin::Control, public Kestrin::DynamicMenu {
public:
    /// `handler` may be null: the pop-up then sends nothing.
    MenuUI(Handler* handler, const UString& caption);

    // What happens to it
    void DoClick(const Kestrin::Point& where, unsigned int modifiers, bool doubleClick) override;
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char key) override;
    void ItemSelected(Kestrin::DynamicMenu* menu, unsigned short item, unsigned int value) override;

    /// To be called when the current item was changed from outside: redraws it and tells it to
    /// assistive technology.
    void ShowCurrentItem();

protected:
    /// Opens the list.
    void Act() override;
    void DrawControl(Kestrin::DrawingContext& context) override;
    void DrawFocusRing(Kestrin::DrawingContext& context) override;

private:
    Kestrin::Rect FrameRect() const;
    void DrawTexts(Kestrin::DrawingContext& context);

    Handler* fHandler;
    UString fCaption;
    float fCaptionWidth;
};
