#include "app/MenuUI.h"

#include "UI/DrawingContext.h"
#include "UI/KeyCodes.h"
#include "UI/Path.h"

#include "app/HitTest.h"
#include "app/Look.h"
#include "app/ShortenedText.h"

using namespace Kestrin;

namespace {

constexpr float kWidth = 520;
constexpr float kHeight = 25;
constexpr float kFrameWidth = 1.5f;
constexpr float kFocusInset = 3;
constexpr float kFocusRingWidth = 2;

} // namespace

MenuUI::MenuUI(Handler* handler, const UString& caption)
    : fHandler(handler)
    , fCaption(caption) {
    SetDimensions(kWidth, kHeight);
    SetupFont(kControlFont, kFontSize, kWhite);
    fCaptionWidth = StringWidth(caption);
    SetTabStop(true);
    SetAccessibility(AccessibleRole::kPopUpButton, caption);
}

Rect MenuUI::FrameRect() const {
    const Rect local = GetLocalRect();
    const float left = local.x + fCaptionWidth + 10;
    return {left, local.y + 1, local.x + local.width - 1 - left, local.height - 2};
}

void MenuUI::DoDraw(DrawingContext& context) {
    const Rect local = GetLocalRect();
    const Rect frame = FrameRect();
    const float right = local.x + local.width;

    context.FillRect(local, kContentBG);
    context.FrameRect(frame, kFrameWidth, kCtrlBlue);
    if (HasKeyFocus()) {
        context.FrameRect({frame.x + kFocusInset, frame.y + kFocusInset,
                           frame.width - 2 * kFocusInset, frame.height - 2 * kFocusInset},
                          kFocusRingWidth, kButtonLabel);
    }

    // The caption's box is about as wide as the frame, not as the caption.
    context.SetupFont(kControlFont, kFontSize, kWhite);
    context.DrawString(fCaption, {local.x, local.y, right - frame.x - local.x, local.height},
                       kTextAlignLeft);
    DrawCurrentItem(context);

    Path triangle;
    triangle.CreateSubpath(right - 10, local.y + 10);
    triangle.AddLine(right - 20, local.y + 10);
    triangle.AddLine(right - 15, local.y + 16);
    triangle.CloseSubpath();
    context.FillPath(triangle, kWhite);
}

void MenuUI::DrawCurrentItem(DrawingContext& context) {
    const Rect local = GetLocalRect();
    const float left = local.x + fCaptionWidth + 20;
    const Rect box{left, local.y + 1, local.x + local.width - 30 - left, local.height - 1};
    context.DrawString(ShortenedText(*this, GetCurrentItemStr(), box.width), box, kTextAlignLeft);
}

void MenuUI::DoClick(const Point& where, unsigned int, bool) {
    // Redrawn first: while the list is open, the window may close and this view go with it.
    Inval();
    if (Contains(FrameRect(), where))
        Open();
}

bool MenuUI::DoTextInput(const UString& text, unsigned int, unsigned char key) {
    // Arrows open the list and do not step through it: each change of surface stores the boxes.
    const bool open =
        key == kKeyUp || key == kKeyDown || text == UString(static_cast<unsigned short>(' '));
    if (open)
        Open();
    return open;
}

void MenuUI::DoKeyFocusStateChanged(bool) {
    Inval();
}

void MenuUI::Open() {
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
    SetAccessibleValue(GetCurrentItemStr());
    Inval();
}
