#pragma once

#include "Platform/Qt/QtWidgets.h"
#include "Platform/UI/NativeTextField.h"

#include <QLineEdit>

class QAccessibleInterface;

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

    /// Ends an edit that goes on.
    void EndEditing();

    // What an assistive technology does. The first begins an edit, which goes on; the others are an
    // edit of their own where none goes on.

    /// Replaces what stands between the offsets, as far as Accepts lets it.
    void Replace(int start, int end, const QString& text);
    /// The same with the whole text.
    void Enter(const QString& text);
    void PressKey(NativeFunctionKey key);

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
    template <typename Change>
    void EditAtOnce(Change change);

    /// Null once the native field is gone.
    NativeTextFieldClient* fClient;
    bool fEditing = false;
};

/// How a field looks to assistive technologies; the caller owns it.
QAccessibleInterface* NewAccessibleField(QtFieldWidget& field);

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
