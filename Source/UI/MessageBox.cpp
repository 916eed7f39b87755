#include "UI/MessageBox.h"

#include "Diagnostics/Failure.h"
#include "Resources/LocalizedStrings.h"
#include "UI/Internal/TextHandOver.h"

#include "Platform/UI/NativeAlert.h"

namespace Kestrin {

namespace {

constexpr int kSecondButton = 1;

void AddButtons(NativeAlert& alert, unsigned int buttons) {
    const std::string ok = HandOver(LookupString("MBOK"));
    const std::string cancel = HandOver(LookupString("MBCancel"));
    const std::string yes = HandOver(LookupString("MBYes"));
    const std::string no = HandOver(LookupString("MBNo"));
    switch (buttons) {
    case kMessageBoxDefaultButton:
        break;
    case kMessageBoxOKCancel:
        alert.AddButton(ok);
        alert.AddButton(cancel);
        break;
    case kMessageBoxYesNo:
        alert.AddButton(yes);
        alert.AddButton(no);
        break;
    default:
        Log("Unknown message box type");
    }
}

} // namespace

int MessageBox(const UString& text, const UString& title, unsigned int type) {
    NativeAlert alert;
    alert.SetMessageText(HandOver(title));
    alert.SetInformativeText(HandOver(text));
    AddButtons(alert, type & kMessageBoxButtonMask);
    if ((type & kMessageBoxStyleMask) == kMessageBoxCritical)
        alert.SetCritical();
    return alert.RunModal() == kSecondButton ? 2 : 1;
}

} // namespace Kestrin
