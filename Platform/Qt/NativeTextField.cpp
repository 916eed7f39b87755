#include "Platform/UI/NativeTextField.h"

#include "Platform/Qt/QtFieldWidget.h"
#include "Platform/Qt/QtFonts.h"
#include "Platform/Qt/QtGraphics.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtView.h"

#include <algorithm>
#include <cmath>

namespace Kestrin {

namespace {

/// Nothing is painted behind the text; the text keeps its colour also where it cannot be edited.
void SetColors(QWidget& widget, const QColor& text) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, text);
    widget.setPalette(palette);
}

int Pixels(double points) {
    return static_cast<int>(std::lround(points));
}

} // namespace

struct NativeTextField::Data {
    Data(QWidget* hostWidget, NativeTextFieldClient* client)
        : host(hostWidget)
        , holder(new QtFieldHolder(hostWidget, client))
        , widget(&holder->Field()) {}

    ~Data() {
        host->setFocusProxy(nullptr);
        widget->ForgetClient();
        holder->RetireSafely();
    }

    QWidget* host;
    /// Deletes itself when it is retired.
    QtFieldHolder* holder;
    QtFieldWidget* widget;
};

NativeTextField::NativeTextField(NativeView& host, NativeTextFieldClient* client)
    : fData(std::make_unique<Data>(WidgetOf(host), client)) {
    SetColors(*fData->widget, Qt::black);
    fData->host->setFocusProxy(fData->widget);
    fData->holder->show();
}

NativeTextField::~NativeTextField() = default;

void NativeTextField::SetText(const std::string& text) {
    fData->widget->setText(ToQString(text));
    // Of a text that is too long for the field, its beginning is seen when nobody edits it.
    if (!fData->widget->IsEditing())
        fData->widget->setCursorPosition(0);
}

std::string NativeTextField::GetText() const {
    return ToUtf8(fData->widget->text());
}

void NativeTextField::EndEditing() {
    fData->widget->clearFocus();
}

void NativeTextField::SetFrame(CGRect frame) {
    fData->holder->setGeometry(Pixels(frame.origin.x), Pixels(frame.origin.y),
                               std::max(0, Pixels(frame.size.width)),
                               std::max(0, Pixels(frame.size.height)));
}

void NativeTextField::SetAlignment(Alignment alignment) {
    const Qt::Alignment horizontal = alignment == Alignment::kRight    ? Qt::AlignRight
                                     : alignment == Alignment::kCenter ? Qt::AlignHCenter
                                                                       : Qt::AlignLeft;
    fData->widget->setAlignment(horizontal | Qt::AlignVCenter);
}

void NativeTextField::SetFont(const std::string& family, double size) {
    fData->widget->setFont(FontNamed(family, std::max(1, Pixels(size))));
}

void NativeTextField::SetTextColor(double red, double green, double blue, double alpha) {
    SetColors(*fData->widget, ColorOf(red, green, blue, alpha));
}

} // namespace Kestrin
