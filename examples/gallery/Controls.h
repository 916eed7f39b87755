#pragma once

#include "UI/Control.h"
#include "UI/DynamicMenu.h"
#include "UI/Path.h"

#include <functional>
#include <initializer_list>

// Two controls as a program makes them: a control decides how it looks and what being pressed
// means.

/// A button with round ends. It acts when it is released with the pointer on it, or by Space.
class PushButton : public Kestrin::Control {
public:
    PushButton(const UString& caption, float width, std::function<void()> action);

protected:
    void Act() override;
    void DrawControl(Kestrin::DrawingContext& context) override;
    void DrawFocusRing(Kestrin::DrawingContext& context) override;

private:
    UString fCaption;
    std::function<void()> fAction;
    Kestrin::Path fOutline;
};

/// A frame with the chosen text that opens a menu of the choices.
class ChoiceBox : public Kestrin::Control, public Kestrin::MenuItemSelectedListener {
public:
    ChoiceBox(std::initializer_list<const char*> choices, float width);

    void DoClick(const Kestrin::Point& where, unsigned int modifiers, bool doubleClick) override;
    void ItemSelected(Kestrin::DynamicMenu* menu, unsigned short item, unsigned int value) override;

protected:
    void Act() override;
    void DrawControl(Kestrin::DrawingContext& context) override;
    void DrawFocusRing(Kestrin::DrawingContext& context) override;

private:
    void DrawFrame(Kestrin::DrawingContext& context, float width);

    Kestrin::DynamicMenu fMenu;
};
