#include "examples/gallery/GalleryWindow.h"

#include "Resources/LocalizedStrings.h"
#include "UI/DrawingContext.h"
#include "UI/KeyCodes.h"
#include "UI/MessageBox.h"
#include "examples/gallery/Colors.h"

#include "App/Application.h"

#include <algorithm>

using namespace Kestrin;

namespace {

constexpr unsigned int kWidth = 520;
constexpr unsigned int kHeight = 280;
constexpr float kMargin = 20;

bool HasDigitsAlone(const UString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned short unit) { return unit >= '0' && unit <= '9'; });
}

} // namespace

GalleryWindow::GalleryWindow()
    : fWindow(
          Window::Create(*this, LookupString("Gallery"), kWidth, kHeight, Window::kMiniaturizable))
    , fChoice({"First choice", "Second choice", "Third choice"}, 200)
    , fField(OSTextEdit::Create(this, true))
    , fAlert(LookupString("Ask"), 100, [this] { Ask(); })
    , fQuit(LookupString("Quit"), 100, [] { Application::Current()->Quit(); })
    , fState(LookupString("Type digits, or press Ask.")) {
    PlaceInView(fWindow->GetRootView(), 0, 0);
    SetDimensions(kWidth, kHeight);
    PlaceControls();
    fWindow->Activate();
}

/// The views within go before the window does.
GalleryWindow::~GalleryWindow() {
    RemoveFromSuperview();
    Window::DestroyWindow(fWindow);
}

/// Each view has its place in its parent. Tab goes through the controls in the order of placing.
void GalleryWindow::PlaceControls() {
    constexpr float kFirstRow = 190;
    constexpr float kSecondRow = 232;
    fSamples.PlaceInView(this, kMargin, kMargin);
    fChoice.PlaceInView(this, kMargin, kFirstRow);
    fField->PlaceInView(this, kMargin + 250, kFirstRow + 1);
    fField->SetDimensions(100, 22);
    fField->SetBackgroundColor(kPaper);
    fField->SetDefaultForegroundColor(kInk);
    fField->SetFont(kFontPlain, kTextSize);
    fField->SetAlignment(kTextAlignCenter);
    fField->SetText("127"_u);
    fField->SetAccessibility(AccessibleRole::kTextField, LookupString("Number"));
    fAlert.PlaceInView(this, kMargin + 250, kSecondRow);
    fQuit.PlaceInView(this, kMargin + 370, kSecondRow);
}

void GalleryWindow::DoDraw(DrawingContext& context) {
    context.FillRect(GetLocalRect(), kBackground);
    context.SetupFont(kFontPlain, kTextSize, kText);
    context.DrawString(fState, {kMargin, 232, 230, 24}, kTextAlignLeft);
}

void GalleryWindow::Ask() {
    const int answer = MessageBox(LookupString("The answer is shown in the window."),
                                  LookupString("Yes or no?"), kMessageBoxYesNo);
    fState = LookupString(answer == 1 ? "The answer was yes." : "The answer was no.");
    Inval();
}

bool GalleryWindow::DoTextInput(const UString&, unsigned int, unsigned char keyCode) {
    if (keyCode != kKeyEscape)
        return false;
    Application::Current()->Quit();
    return true;
}

void GalleryWindow::WindowClosedNotification(Window*) {
    Application::Current()->Quit();
}

void GalleryWindow::WindowActivationChanged(Window*, bool) {}

bool GalleryWindow::FilterTextEditDoTextInput(OSTextEdit*, const UString& text, unsigned int,
                                              unsigned char) {
    return HasDigitsAlone(text);
}

void GalleryWindow::ActiveStateChanged(OSTextEdit* edit, bool active) {
    if (active)
        return;
    fState = LookupString("The field holds ");
    fState.append(edit->GetText());
    Inval();
}
