#include "app/BtnUI.h"

#include "UI/DrawingContext.h"
#include "UI/KeyCodes.h"

#include "app/HitTest.h"
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
    : fHandler(handler)
    , fCommand(command)
    , fCaption(caption) {
    SetDimensions(width, kHeight);
    AddPill(fOutline, width, 0);
    SetTabStop(true);
    SetAccessibility(AccessibleRole::kButton, caption);
}

void BtnUI::DoDraw(DrawingContext& context) {
    const bool down = fPressed && fInside;
    context.StrokePath(fOutline, kOutlineWidth, down ? kCtrlBlue : kWhite,
                       DrawingContext::kAntiAliasDefault);
    if (HasKeyFocus()) {
        Path ring;
        AddPill(ring, GetDimensions().width, kFocusInset);
        context.StrokePath(ring, kFocusRingWidth, kButtonLabel, DrawingContext::kAntiAliasDefault);
    }
    context.SetupFont(kControlFont, kFontSize, kWhite);
    context.DrawString(fCaption, fOutline.GetBounds(), kTextAlignCenter);
}

void BtnUI::DoClick(const Point&, unsigned int, bool) {
    fPressed = true;
    fInside = true;
    Inval();
}

void BtnUI::DoTrack(const Point& where, unsigned int) {
    if (!fPressed)
        return;
    fInside = Contains(GetLocalRect(), where);
    Inval();
}

void BtnUI::DoMouseUp(unsigned int) {
    if (fInside) {
        SendCommand();
        Inval();
    }
    fPressed = false;
    fInside = false;
}

bool BtnUI::DoTextInput(const UString& text, unsigned int, unsigned char key) {
    const bool press =
        key == kKeyReturn || key == kKeyEnter || text == UString(static_cast<unsigned short>(' '));
    if (press)
        SendCommand();
    return press;
}

void BtnUI::DoKeyFocusStateChanged(bool) {
    Inval();
}

void BtnUI::SendCommand() {
    if (fHandler != nullptr)
        fHandler->Handle(fCommand);
}
