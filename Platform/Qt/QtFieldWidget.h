#pragma once

#include "Platform/Qt/QtWidgets.h"
#include "Platform/UI/NativeTextField.h"

#include <QLineEdit>

namespace Kestrin {

/// The line editor of a native text field.
class QtFieldWidget final : public QLineEdit {
public:
    QtFieldWidget(QWidget* parent, NativeTextFieldClient* client);

    /// The native field goes: from now on nobody is told anything.
    void ForgetClient();

    bool IsEditing() const { return fEditing; }

    /// Whether an edit may make `text` of the field's text.
    bool Accepts(const QString& text) const;

protected:
    bool event(QEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    bool LetsThrough(const NativeKeyEvent& event);
    bool HandleKeyPress(QKeyEvent& event);
    void BeginEditing();
    void EndEditing();

    /// Null once the native field is gone.
    NativeTextFieldClient* fClient;
    bool fEditing = false;
};

/// What the line editor fills. It goes the way of views: out of sight at once, and deleted with the
/// line editor when nothing of theirs runs.
class QtFieldHolder final : public QtEventTarget {
public:
    QtFieldHolder(QWidget* parent, NativeTextFieldClient* client);

    QtFieldWidget& Field() { return *fField; }

protected:
    void ArrangeNow() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QtFieldWidget* fField;
};

} // namespace Kestrin
