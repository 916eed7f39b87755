#include "Platform/UI/NativeAlert.h"

#include "Platform/Qt/QtApplication.h"
#include "Platform/Qt/QtText.h"
#include "Platform/UI/NativeApplication.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <algorithm>
#include <vector>

namespace Kestrin {

namespace {

constexpr int kTextWidth = 400; // before it wraps

/// Shows its text as it is, selectable, so that the keyboard and screen readers can go through it.
void MakeReadable(QLabel& label) {
    label.setTextFormat(Qt::PlainText);
    label.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

/// The toolkit wraps this text, and makes it narrow where nothing else is wide.
void WidenToText(QLabel& label) {
    const QRect limit(0, 0, kTextWidth, QWIDGETSIZE_MAX);
    const QRect text = label.fontMetrics().boundingRect(
        limit, Qt::TextWordWrap | Qt::TextWrapAnywhere, label.text());
    label.setMinimumWidth(std::min(text.width() + 2 * label.margin() + 1, kTextWidth));
}

void MakeBold(QLabel& label) {
    QFont font = label.font();
    font.setBold(true);
    label.setFont(font);
}

} // namespace

struct NativeAlert::Data {
    std::string messageText;
    std::string informativeText;
    std::vector<std::string> buttonTitles;
    bool isCritical = false;

    /// The answer of Escape and of the program's end.
    int CancelIndex() const { return buttonTitles.size() == 2 ? 1 : 0; }
};

namespace {

/// The widget of an alert that is being shown. It goes with the window over which it stands.
class AlertBox : public QMessageBox {
public:
    AlertBox(Icon icon, const QString& headline, const QString& text)
        : QMessageBox(QApplication::activeWindow()) {
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setIcon(icon);
        setTextFormat(Qt::PlainText);
        setText(headline);
        setInformativeText(text);
        for (const char* name : {"qt_msgbox_label", "qt_msgbox_informativelabel"})
            if (auto* label = findChild<QLabel*>(QLatin1String(name)))
                MakeReadable(*label);
        if (auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
            MakeBold(*label);
        if (auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
            WidenToText(*label);
        setWindowTitle(AsTitle(ToQString(NativeApplication::Shared().Name())));
    }

    /// Buttons of this role stand in the order in which they are added, on every desktop.
    void Add(const QString& title) {
        fButtons << addButton(WithoutMnemonics(title), QMessageBox::ActionRole);
    }

    void AddPlatformButton() {
        fButtons << addButton(QMessageBox::Ok);
        fButtons.back()->setIcon(QIcon()); // like the buttons that callers add
    }

    /// The index of the pressed button, -1 if it ended otherwise. Null-safe behind its own end.
    static int Ask(const QPointer<AlertBox>& box, int cancelIndex) {
        box->setDefaultButton(box->fButtons.front());
        box->setEscapeButton(box->fButtons[cancelIndex]);
        box->fButtons.front()->setFocus();
        box->exec();
        return box ? static_cast<int>(box->fButtons.indexOf(box->clickedButton())) : -1;
    }

private:
    QList<QPushButton*> fButtons;
};

} // namespace

NativeAlert::NativeAlert()
    : fData(std::make_unique<Data>()) {}

NativeAlert::~NativeAlert() = default;

void NativeAlert::SetMessageText(const std::string& text) {
    fData->messageText = text;
}

void NativeAlert::SetInformativeText(const std::string& text) {
    fData->informativeText = text;
}

void NativeAlert::AddButton(const std::string& title) {
    fData->buttonTitles.push_back(title);
}

void NativeAlert::SetCritical() {
    fData->isCritical = true;
}

int NativeAlert::RunModal() {
    const int cancelIndex = fData->CancelIndex();
    const NativeApplication& application = NativeApplication::Shared();
    if (application.IsTerminating() && !application.HasEnded())
        return cancelIndex;
    const QPointer<AlertBox> box =
        new AlertBox(fData->isCritical ? QMessageBox::Critical : QMessageBox::Information,
                     ToQString(fData->messageText), ToQString(fData->informativeText));
    for (const std::string& title : fData->buttonTitles)
        box->Add(ToQString(title));
    if (fData->buttonTitles.empty())
        box->AddPlatformButton();
    const int pressed = AlertBox::Ask(box, cancelIndex);
    delete box.data();
    RethrowEventFailure();
    return pressed >= 0 ? pressed : cancelIndex;
}

} // namespace Kestrin
