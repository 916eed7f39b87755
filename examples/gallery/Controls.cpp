#include "examples/gallery/Controls.h"

#include "UI/DrawingContext.h"
#include "examples/gallery/Colors.h"

#include <numbers>
#include <utility>

using Kestrin::DrawingContext;
using Kestrin::Point;
using Kestrin::Rect;

namespace {

constexpr float kControlHeight = 24;

bool IsSpace(const UString& text) {
    return text == UString(" ", UString::kASCII);
}

} // namespace

// PushButton

PushButton::PushButton(const UString& caption, float width, std::function<void()> action)
    : fCaption(caption)
    , fAction(std::move(action)) {
    constexpr float kQuarterTurn = std::numbers::pi_v<float> / 2;
    constexpr float kRadius = 10;
    constexpr float kTop = 2;
    constexpr float kMiddle = kTop + kRadius;
    SetDimensions(width, kControlHeight);
    SetTabStop(true);
    SetAccessibility(Kestrin::AccessibleRole::kButton, caption);
    fOutline.CreateSubpath(kMiddle, kTop);
    fOutline.AddLine(width - kMiddle, kTop);
    fOutline.AddArc(kRadius, {width - kMiddle, kMiddle}, -kQuarterTurn, kQuarterTurn);
    fOutline.AddLine(kMiddle, kTop + 2 * kRadius);
    fOutline.AddArc(kRadius, {kMiddle, kMiddle}, kQuarterTurn, 3 * kQuarterTurn);
    fOutline.CloseSubpath();
}

void PushButton::DoDraw(DrawingContext& context) {
    if (fPressed && fInside)
        context.FillPath(fOutline, kAccent);
    context.StrokePath(fOutline, HasKeyFocus() ? 3.0F : 1.5F, kAccent,
                       DrawingContext::kAntiAliasDefault);
    context.SetupFont(Kestrin::kFontPlain, kTextSize, kText);
    context.DrawString(fCaption, fOutline.GetBounds(), Kestrin::kTextAlignCenter);
}

void PushButton::DoClick(const Point&, unsigned int, bool) {
    fPressed = true;
    fInside = true;
    Inval();
}

void PushButton::DoTrack(const Point& where, unsigned int) {
    const Rect bounds = GetLocalRect();
    fInside = where.x >= 0 && where.y >= 0 && where.x < bounds.width && where.y < bounds.height;
    Inval();
}

void PushButton::DoMouseUp(unsigned int) {
    const bool acts = std::exchange(fPressed, false) && fInside;
    Inval();
    if (acts)
        fAction();
}

bool PushButton::DoTextInput(const UString& text, unsigned int, unsigned char) {
    if (!IsSpace(text))
        return false;
    fAction();
    return true;
}

void PushButton::DoKeyFocusStateChanged(bool) {
    Inval();
}

// ChoiceBox

ChoiceBox::ChoiceBox(std::initializer_list<const char*> choices, float width) {
    SetDimensions(width, kControlHeight);
    SetTabStop(true);
    SetAccessibility(Kestrin::AccessibleRole::kPopUpButton, UString("Choice", UString::kASCII));
    for (const char* choice : choices)
        fMenu.AppendItem(UString(choice, UString::kUTF8), 0);
    fMenu.SetCurrentItem(1);
    fMenu.AddListener(this);
}

ChoiceBox::~ChoiceBox() {
    fMenu.RemoveListener(this);
}

void ChoiceBox::DoDraw(DrawingContext& context) {
    const Rect bounds = GetLocalRect();
    context.FrameRect({1, 1, bounds.width - 2, bounds.height - 2}, HasKeyFocus() ? 3.0F : 1.5F,
                      kAccent);
    context.SetupFont(Kestrin::kFontPlain, kTextSize, kText);
    context.DrawString(fMenu.GetCurrentItemStr(), {10, 0, bounds.width - 40, bounds.height},
                       Kestrin::kTextAlignLeft);
    Kestrin::Path triangle;
    triangle.CreateSubpath(bounds.width - 20, 10);
    triangle.AddLine(bounds.width - 10, 10);
    triangle.AddLine(bounds.width - 15, 16);
    triangle.CloseSubpath();
    context.FillPath(triangle, kText);
}

void ChoiceBox::DoClick(const Point&, unsigned int, bool) {
    OpenMenu();
}

bool ChoiceBox::DoTextInput(const UString& text, unsigned int, unsigned char) {
    if (!IsSpace(text))
        return false;
    OpenMenu();
    return true;
}

/// The menu opens with the current item over the control.
void ChoiceBox::OpenMenu() {
    const Point corner = ViewToScreen({0, 0});
    fMenu.PopupSelect(static_cast<int>(corner.x), static_cast<int>(corner.y));
    Inval();
}

void ChoiceBox::DoKeyFocusStateChanged(bool) {
    Inval();
}

void ChoiceBox::ItemSelected(Kestrin::DynamicMenu* menu, unsigned short item, unsigned int) {
    menu->SetCurrentItem(item);
    Inval();
}
