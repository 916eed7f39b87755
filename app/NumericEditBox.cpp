#include "app/NumericEditBox.h"

#include "Resources/LocalizedStrings.h"
#include "Strings/TextConversions.h"
#include "UI/DrawingContext.h"
#include "UI/KeyCodes.h"
#include "UI/MessageBox.h"

#include "app/Look.h"

#include <algorithm>
#include <limits>

using namespace Kestrin;

namespace {

constexpr float kHeight = 25;
constexpr Point kFieldOrigin{4, 2};
constexpr float kFieldHeight = 22;
constexpr float kFocusRingWidth = 2;
constexpr RGBAColor kClear{1, 1, 1, 0};

} // namespace

void NumericEditBox::Init(View* parent, const Point& where, float width, int minimum, int maximum,
                          const UString& name) {
    fMinimum = minimum;
    fMaximum = maximum;
    PlaceInView(parent, where);
    SetDimensions(width, kHeight);
    SetUpField();
    fField->SetAccessibleNumberField(name, minimum, maximum);
    ShowHide(true);
    Inval();
}

void NumericEditBox::SetUpField() {
    fField.reset(OSTextEdit::Create(this, true));
    fField->PlaceInView(this, kFieldOrigin);
    fField->SetDimensions(GetDimensions().width - 2 * kFieldOrigin.x, kFieldHeight);
    fField->SetBackgroundColor(kWhite);
    fField->SetDefaultForegroundColor(kBlack);
    fField->ShowHide(true);
    fField->SetFont(kControlFont, kFontSize);
    fField->Inval();
    fField->SetAlignment(kTextAlignCenter);
    fField->SetText("0"_u);
}

int NumericEditBox::Get() const {
    constexpr long kLeast = std::numeric_limits<int>::min();
    constexpr long kMost = std::numeric_limits<int>::max();
    return static_cast<int>(
        std::clamp(UStringToNum(fField->GetText(), kDecimalFormat), kLeast, kMost));
}

void NumericEditBox::Show(int value) {
    if (fEditing || !IsInRange(value) || value == Get())
        return;
    fValue = value;
    fField->SetText(NumToUString(value, kDecimalFormat));
}

bool NumericEditBox::SupportsFeature(ViewFeature feature) {
    return feature == kViewFeatureTransparent;
}

void NumericEditBox::DoDraw(DrawingContext& context) {
    const Rect local = GetLocalRect();
    context.FillRect(local, kWhite);
    if (fEditing) {
        context.FrameRect({local.x + kFocusRingWidth / 2, local.y + kFocusRingWidth / 2,
                           local.width - kFocusRingWidth, local.height - kFocusRingWidth},
                          kFocusRingWidth, kButtonLabel);
    }
}

bool NumericEditBox::FilterTextEditDoTextInput(OSTextEdit*, const UString& text, unsigned int,
                                               unsigned char key) {
    switch (key) {
    case kKeyEnter:
    case kKeyReturn:
    case kKeyEscape:
        return true;
    case kKeyUp:
        Step(1);
        return false;
    case kKeyDown:
        Step(-1);
        return false;
    default:
        // The empty text of an editing key is numeric, so that Backspace and its like get through.
        return IsNumeric(text);
    }
}

void NumericEditBox::Step(int difference) {
    const int number = Get();
    const bool hasRoom = difference > 0 ? number < fMaximum : number > fMinimum;
    if (hasRoom)
        fField->SetText(NumToUString(number + difference, kDecimalFormat));
}

void NumericEditBox::ActiveStateChanged(OSTextEdit*, bool active) {
    fEditing = active;
    // The field is over the lower edge of the ring, which shows through it.
    fField->SetBackgroundColor(active ? kClear : kWhite);
    Inval();
    if (!active)
        Judge();
}

bool NumericEditBox::AcceptsText(OSTextEdit*, const UString& text) {
    return IsNumeric(text);
}

void NumericEditBox::Judge() {
    const int number = Get();
    if (IsInRange(number)) {
        fValue = number;
        fField->SetText(NumToUString(number, kDecimalFormat));
        return;
    }
    MessageBox(RangeMessage(), LookupString("Invalid Number"), kMessageBoxCritical);
    Show(fValue);
}

UString NumericEditBox::RangeMessage() const {
    UString message = LookupString("Value must be between ");
    message.append(NumToUString(fMinimum, kDecimalFormat));
    message.append(LookupString(" and "));
    message.append(NumToUString(fMaximum, kDecimalFormat));
    message.append(LookupString("."));
    return message;
}
