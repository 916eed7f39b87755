#pragma once

#include "UI/DynamicMenu.h"
#include "UI/Path.h"
#include "UI/View.h"

#include <functional>
#include <initializer_list>

// Two controls as a program makes them: a view decides how it looks and what its events mean.

/// A button with round ends. It acts when it is released with the pointer on it, or by Space.
class PushButton : public Kestrin::View {
public:
    PushButton(const UString& caption, float width, std::function<void()> action);

    void DoDraw(Kestrin::DrawingContext& context) override;
    void DoClick(const Kestrin::Point& where, unsigned int modifiers, bool doubleClick) override;
    void DoTrack(const Kestrin::Point& where, unsigned int modifiers) override;
    void DoMouseUp(unsigned int modifiers) override;
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char keyCode) override;
    void DoKeyFocusStateChanged(bool hasFocus) override;

private:
    UString fCaption;
    std::function<void()> fAction;
    Kestrin::Path fOutline;
    bool fPressed = false;
    bool fInside = false;
};

/// A frame with the chosen text that opens a menu of the choices.
class ChoiceBox : public Kestrin::View, public Kestrin::MenuItemSelectedListener {
public:
    ChoiceBox(std::initializer_list<const char*> choices, float width);
    ~ChoiceBox() override;

    void DoDraw(Kestrin::DrawingContext& context) override;
    void DoClick(const Kestrin::Point& where, unsigned int modifiers, bool doubleClick) override;
    bool DoTextInput(const UString& text, unsigned int modifiers, unsigned char keyCode) override;
    void DoKeyFocusStateChanged(bool hasFocus) override;
    void ItemSelected(Kestrin::DynamicMenu* menu, unsigned short item, unsigned int value) override;

private:
    void OpenMenu();

    Kestrin::DynamicMenu fMenu;
};
