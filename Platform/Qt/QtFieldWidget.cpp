#include "Platform/Qt/QtFieldWidget.h"

#include "Platform/Qt/QtEvents.h"
#include "Platform/Qt/QtText.h"

#include <QApplication>
#include <QDropEvent>
#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QValidator>
#include <limits>

namespace Kestrin {

namespace {

/// Whether the focus only seems to move: it comes back when the other window or the menu closes.
bool IsTemporary(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

/// Whether neither a key nor the pointer brought the focus.
bool IsGivenByProgram(Qt::FocusReason reason) {
    return reason == Qt::OtherFocusReason ||
           (reason == Qt::MouseFocusReason && QGuiApplication::mouseButtons() == Qt::NoButton);
}

/// The toolkit asks its validator about the outcome of every edit before it is shown.
class EditJudge final : public QValidator {
public:
    explicit EditJudge(QtFieldWidget* field)
        : QValidator(field)
        , fField(field) {}

    State validate(QString& text, int&) const override {
        return fField->Accepts(text) ? Acceptable : Invalid;
    }

private:
    QtFieldWidget* fField;
};

} // namespace

QtFieldWidget::QtFieldWidget(QWidget* parent, NativeTextFieldClient* client)
    : QLineEdit(parent)
    , fClient(client) {
    setFrame(false);
    setMaxLength(std::numeric_limits<int>::max());
    setValidator(new EditJudge(this));
    connect(this, &QLineEdit::textChanged, this, [this] { TellAccessibleValueOf(*this); });
    // Focus can move while the window is inactive; no event of the widget's own tells so.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        const QtEventTarget::Running running;
        if (now && now != this && now->window() == window())
            EndEditing();
    });
}

void QtFieldWidget::ForgetClient() {
    fClient = nullptr;
    disconnect(qApp, nullptr, this, nullptr);
}

bool QtFieldWidget::Accepts(const QString& text) const {
    return !fClient || fClient->HandleFieldTextWillChange(ToUtf8(text));
}

bool QtFieldWidget::event(QEvent* event) {
    const QtEventTarget::Running running;
    if (event->type() == QEvent::KeyPress)
        return HandleKeyPress(static_cast<QKeyEvent&>(*event));
    return QLineEdit::event(event);
}

bool QtFieldWidget::LetsThrough(const NativeKeyEvent& event) {
    return fClient && fClient->HandleFieldKeyDown(event) && fClient;
}

bool QtFieldWidget::HandleKeyPress(QKeyEvent& event) {
    if (IsModifierKey(event))
        return QLineEdit::event(&event);
    if (LetsThrough(NativeKeyEventOf(event)))
        QLineEdit::event(&event);
    // The field is where a key ends: one without a meaning here has none for the views around it.
    event.accept();
    return true;
}

void QtFieldWidget::inputMethodEvent(QInputMethodEvent* event) {
    if (event->commitString().isEmpty()) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    NativeKeyEvent typed;
    typed.characters = ToUtf8(event->commitString());
    typed.charactersIgnoringModifiers = ToUtf16(event->commitString());
    if (LetsThrough(typed)) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent rest(event->preeditString(), event->attributes());
    QLineEdit::inputMethodEvent(&rest);
}

void QtFieldWidget::dropEvent(QDropEvent* event) {
    // Begins an edit, whose end then judges what was dropped.
    setFocus();
    QLineEdit::dropEvent(event);
}

void QtFieldWidget::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (IsGivenByProgram(event->reason()))
        selectAll();
    BeginEditing();
}

void QtFieldWidget::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (!IsTemporary(event->reason()))
        EndEditing();
}

void QtFieldWidget::BeginEditing() {
    if (fEditing || !fClient)
        return;
    fEditing = true;
    fClient->HandleFieldEditingBegan();
}

void QtFieldWidget::EndEditing() {
    if (!fEditing || !fClient)
        return;
    fEditing = false;
    fClient->HandleFieldEditingEnded();
}

void QtFieldWidget::Replace(int start, int end, const QString& text) {
    setFocus();
    // In a window that is not active the focus comes without an event.
    BeginEditing();
    setSelection(start, end - start);
    insert(text);
}

template <typename Change>
void QtFieldWidget::EditAtOnce(Change change) {
    const bool goesOn = fEditing;
    BeginEditing();
    change();
    if (!goesOn)
        EndEditing();
}

void QtFieldWidget::Enter(const QString& text) {
    EditAtOnce([&] {
        selectAll();
        insert(text);
    });
}

void QtFieldWidget::PressKey(NativeFunctionKey key) {
    NativeKeyEvent event;
    event.charactersIgnoringModifiers.assign(1, static_cast<char16_t>(key));
    EditAtOnce([&] { LetsThrough(event); });
}

QtFieldHolder::QtFieldHolder(QWidget* parent, NativeTextFieldClient* client)
    : QtEventTarget(parent)
    , fField(new QtFieldWidget(this, client)) {}

void QtFieldHolder::ArrangeNow() {
    // Left to the toolkit, the focus would go on to the next control.
    if (window()->focusWidget() == fField)
        window()->setFocus();
    hide();
    setParent(nullptr);
}

void QtFieldHolder::resizeEvent(QResizeEvent*) {
    fField->resize(size());
}

} // namespace Kestrin
