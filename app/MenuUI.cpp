#include "app/MenuUI.h"

#include "UI/DrawingContext.h"
#include "UI/KeyCodes.h"
#include "UI/Path.h"

#include "app/Look.h"

using namespace Kestrin;

namespace {

constexpr float kWidth = 520;
constexpr float kHeight = 25;
constexpr float kFrameWidth = 1.5f;
constexpr float kFocusInset = 1.75f; // joins the frame, clear of what the text reaches
constexpr float kFocusRingWidth = 2;

} // namespace

MenuUI::MenuUI(Handler* handler, const UString& caption)
    : Control(AccessibleRole::kPopUpButton, caption)
    , fHandler(handler)
    , fCaption(caption) {
    SetDimensions(kWidth, kHeight);
    SetupFont(kControlFont, kFontSize, kWhite);
    fCaptionWidth = StringWidth(caption);
    SetAccessiblePopUp(caption, *this);
}

Rect MenuUI::FrameRect() const {
    const Rect local = GetLocalRect();
    const float left = local.x + fCaptionWidth + 10;
    return {left, local.y + 1, local.x + local.width - 1 - left, local.height - 2};
}

void MenuUI::DrawControl(DrawingContext& context) {
    const Rect local = GetLocalRect();
    const float right = local.x + local.width;
    context.FillRect(local, kContentBG);
    context.FrameRect(FrameRect(), kFrameWidth, kCtrlBlue);
    DrawTexts(context);
    Path triangle;
    triangle.CreateSubpath(right - 10, local.y + 10);
    triangle.AddLine(right - 20, local.y + 10);
    triangle.AddLine(right - 15, local.y + 16);
    triangle.CloseSubpath();
    context.FillPath(triangle, kWhite);
}

void MenuUI::DrawTexts(DrawingContext& context) {
    const Rect local = GetLocalRect();
    const Rect frame = FrameRect();
    const float right = local.x + local.width;
    const float itemLeft = frame.x + 10;
    context.SetupFont(kControlFont, kFontSize, kWhite);
    // Names often differ at their ends alone.
    context.SetTruncate(kTruncateMiddle);
    // The caption's box is about as wide as the frame, not as the caption.
    context.DrawString(fCaption, {local.x, local.y, right - frame.x - local.x, local.height},
                       kTextAlignLeft);
    context.DrawString(GetCurrentItemStr(),
                       {itemLeft, local.y + 1, right - 30 - itemLeft, local.height - 1},
                       kTextAlignLeft);
}

void MenuUI::DrawFocusRing(DrawingContext& context) {
    context.FrameRect(Inset(FrameRect(), kFocusInset), kFocusRingWidth, kButtonLabel);
}

void MenuUI::DoClick(const Point& where, unsigned int, bool) {
    // Redrawn first: while the list is open, the window may close and this view go with it.
    Inval();
    if (Contains(FrameRect(), where))
        Act();
}

bool MenuUI::DoTextInput(const UString& text, unsigned int modifiers, unsigned char key) {
    // Arrows open the list and do not step through it: each change of surface stores the boxes.
    if (key != kKeyUp && key != kKeyDown)
        return Control::DoTextInput(text, modifiers, key);
    Act();
    return true;
}

void MenuUI::Act() {
    const Rect frame = FrameRect();
    const Point corner = ViewToScreen({frame.x, frame.y});
    PopupSelect(static_cast<int>(corner.x), static_cast<int>(corner.y));
}

void MenuUI::ItemSelected(DynamicMenu*, unsigned short item, unsigned int) {
    SetCurrentItem(item);
    if (fHandler != nullptr)
        fHandler->Handle(kCommandMenu);
}

void MenuUI::ShowCurrentItem() {
    TellAccessibleValueChanged();
    Inval();
}
