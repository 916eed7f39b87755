#pragma once

#include "Strings/UString.h"

namespace Kestrin {

/// The buttons of a message box (low four bits of its type) and its style (the next four).
enum MessageBoxType : unsigned int {
    kMessageBoxDefaultButton = 0x00,
    kMessageBoxOKCancel = 0x01,
    kMessageBoxYesNo = 0x04,
    kMessageBoxButtonMask = 0x0F,
    kMessageBoxCritical = 0x30,
    kMessageBoxStyleMask = 0xF0,
};

/// Shows `title` as headline and `text` as explanation and waits for the answer: 2 when the second
/// button (Cancel, No) was pressed, else 1. Any other style is the informational one; other buttons
/// are reported through Log and shown as the default button.
int MessageBox(const UString& text, const UString& title, unsigned int type);

} // namespace Kestrin
