#include "examples/gallery/Controls.h"

#include "UI/DrawingContext.h"
#include "examples/gallery/Colors.h"

#include <numbers>
#include <utility>

using Kestrin::AccessibleRole;
using Kestrin::DrawingContext;
using Kestrin::Point;
using Kestrin::Rect;

namespace {

constexpr float kControlHeight = 24;
constexpr float kLine = 1.5F;
constexpr float kFocusLine = 3;

} // namespace

// PushButton

PushButton::PushButton(const UString& caption, float width, std::function<void()> action)
    : Control(AccessibleRole::kButton, caption)
    , fCaption(caption)
    , fAction(std::move(action)) {
    constexpr float kQuarterTurn = std::numbers::pi_v<float> / 2;
    constexpr float kRadius = 10;
    constexpr float kTop = 2;
    constexpr float kMiddle = kTop + kRadius;
    SetDimensions(width, kControlHeight);
    fOutline.CreateSubpath(kMiddle, kTop);
    fOutline.AddLine(width - kMiddle, kTop);
    fOutline.AddArc(kRadius, {width - kMiddle, kMiddle}, -kQuarterTurn, kQuarterTurn);
    fOutline.AddLine(kMiddle, kTop + 2 * kRadius);
    fOutline.AddArc(kRadius, {kMiddle, kMiddle}, kQuarterTurn, 3 * kQuarterTurn);
    fOutline.CloseSubpath();
}

/// By a copy of the action, which may destroy the button.
void PushButton::Act() {
    const std::function<void()> action = fAction;
    action();
}

void PushButton::DrawControl(DrawingContext& context) {
    if (IsDown())
        context.FillPath(fOutline, kAccent);
    context.StrokePath(fOutline, kLine, kAccent, DrawingContext::kAntiAliasDefault);
    context.SetupFont(Kestrin::kFontPlain, kTextSize, kText);
    context.DrawString(fCaption, fOutline.GetBounds(), Kestrin::kTextAlignCenter);
}

void PushButton::DrawFocusRing(DrawingContext& context) {
    context.StrokePath(fOutline, kFocusLine, kAccent, DrawingContext::kAntiAliasDefault);
}

// ChoiceBox

ChoiceBox::ChoiceBox(std::initializer_list<const char*> choices, float width)
    : Control(AccessibleRole::kPopUpButton, "Choice"_u) {
    SetDimensions(width, kControlHeight);
    for (const char* choice : choices)
        fMenu.AppendItem(UString(choice, UString::kUTF8), 0);
    fMenu.SetCurrentItem(1);
    fMenu.AddListener(this);
    SetAccessiblePopUp("Choice"_u, fMenu);
}

void ChoiceBox::DrawControl(DrawingContext& context) {
    const Rect bounds = GetLocalRect();
    DrawFrame(context, kLine);
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

void ChoiceBox::DrawFocusRing(DrawingContext& context) {
    DrawFrame(context, kFocusLine);
}

void ChoiceBox::DrawFrame(DrawingContext& context, float width) {
    context.FrameRect(Kestrin::Inset(GetLocalRect(), 1), width, kAccent);
}

/// A menu opens at the press already.
void ChoiceBox::DoClick(const Point&, unsigned int, bool) {
    Act();
}

/// The menu opens with the current item over the control.
void ChoiceBox::Act() {
    const Point corner = ViewToScreen({0, 0});
    fMenu.PopupSelect(static_cast<int>(corner.x), static_cast<int>(corner.y));
}

void ChoiceBox::ItemSelected(Kestrin::DynamicMenu* menu, unsigned short item, unsigned int) {
    menu->SetCurrentItem(item);
    TellAccessibleValueChanged();
    Inval();
}
