#include "app/BtnUI.h"

#include "UI/DrawingContext.h"
#include "UI/KeyCodes.h"

#include "app/Look.h"

#include <numbers>

using namespace Kestrin;

namespace {

constexpr float kHeight = 22;
constexpr float kOutlineWidth = 2;
constexpr float kFocusInset = 3;
constexpr float kFocusRingWidth = 2;

/// A pill whose straight edges lie `inset` inside those of the button's outline.
void AddPill(Path& path, float width, float inset) {
    constexpr float kEnd = 20; // where the straight edges end, from either side
    constexpr float kMiddle = 11;
    constexpr float kQuarterTurn = std::numbers::pi_v<float> / 2;
    const float radius = 9 - inset;
    path.CreateSubpath(kEnd, kMiddle - radius);
    path.AddLine(width - kEnd, kMiddle - radius);
    path.AddArc(radius, {width - kEnd, kMiddle}, -kQuarterTurn, kQuarterTurn);
    path.AddLine(kEnd, kMiddle + radius);
    path.AddArc(radius, {kEnd, kMiddle}, kQuarterTurn, 3 * kQuarterTurn);
    path.CloseSubpath();
}

} // namespace

BtnUI::BtnUI(const UString& caption, Handler* handler, unsigned int command, float width)
    : Control(AccessibleRole::kButton, caption)
    , fHandler(handler)
    , fCommand(command)
    , fCaption(caption) {
    SetDimensions(width, kHeight);
    AddPill(fOutline, width, 0);
}

void BtnUI::DrawControl(DrawingContext& context) {
    context.StrokePath(fOutline, kOutlineWidth, IsDown() ? kCtrlBlue : kWhite,
                       DrawingContext::kAntiAliasDefault);
    context.SetupFont(kControlFont, kFontSize, kWhite);
    context.DrawString(fCaption, fOutline.GetBounds(), kTextAlignCenter);
}

void BtnUI::DrawFocusRing(DrawingContext& context) {
    Path ring;
    AddPill(ring, GetDimensions().width, kFocusInset);
    context.StrokePath(ring, kFocusRingWidth, kButtonLabel, DrawingContext::kAntiAliasDefault);
}

bool BtnUI::DoTextInput(const UString& text, unsigned int modifiers, unsigned char key) {
    if (key != kKeyReturn && key != kKeyEnter)
        return Control::DoTextInput(text, modifiers, key);
    Act();
    return true;
}

void BtnUI::Act() {
    if (fHandler != nullptr)
        fHandler->Handle(fCommand);
}
