#pragma once

#include "Platform/UI/NativeTextField.h"

#include <QLineEdit>

namespace Kestrin {

/// The line editor of a native text field. It lives on through the events in which its native field
/// goes, silent and out of sight.
class QtFieldWidget final : public QLineEdit {
public:
    QtFieldWidget(QWidget* parent, NativeTextFieldClient* client);

    /// The native field goes: tells nobody anything any more, leaves its parent and is deleted when
    /// none of its own events runs.
    void LeaveField();

    bool IsEditing() const { return fEditing; }

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    /// Keeps the widget alive while one of its events runs.
    class Running;

    bool LetsThrough(const NativeKeyEvent& event);
    bool HandleKeyPress(QKeyEvent& event);
    void BeginEditing();
    void EndEditing();

    /// Null once the native field is gone.
    NativeTextFieldClient* fClient;
    bool fEditing = false;
    int fRunningEvents = 0;
};

} // namespace Kestrin
