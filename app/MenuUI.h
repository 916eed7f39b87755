#pragma once

#include "Strings/UString.h"
#include "UI/DynamicMenu.h"
#include "UI/View.h"

#include "app/Handler.h"

/// A captioned pop-up, 520 by 25 points: the caption, then a frame with the current item's text and
/// a triangle. It opens on a click in the frame, and on Space, an arrow key or Alt+Down while it
/// has the keyboard focus. Choosing an item, also the current one, makes it the current item and
/// sends 'MENU'.
class MenuUI : public Kestrin::View, public Kestrin::DynamicMenu {
public:
    /// `handler` may be null: the pop-up then sends nothing.
    MenuUI(Handler* handler, const UString& caption);

    // What happens to it
    void DoDraw(Kestrin::DrawingContext& context) override;
    void DoClick(const Kestrin::Point& where, unsigned int modifiers, bool doubleClick) override;
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char key) override;
    void DoKeyFocusStateChanged(bool hasFocus) override;
    void ItemSelected(Kestrin::DynamicMenu* menu, unsigned short item, unsigned int value) override;

    /// To be called when the current item was changed from outside: redraws it and tells it to
    /// assistive technology.
    void ShowCurrentItem();

private:
    Kestrin::Rect FrameRect() const;
    void Open();
    void DrawCurrentItem(Kestrin::DrawingContext& context);

    Handler* fHandler;
    UString fCaption;
    float fCaptionWidth;
};
