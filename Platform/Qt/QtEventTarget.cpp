#include "Platform/Qt/QtWidgets.h"

#include <QEvent>
#include <utility>
#include <vector>

namespace Kestrin {

namespace {

int sRunning = 0;
int sDrawing = 0;
std::vector<QPointer<QtEventTarget>> sRetired;

void DeleteRetired() {
    for (const QPointer<QtEventTarget>& widget : std::exchange(sRetired, {})) {
        if (widget)
            widget->deleteLater();
    }
}

} // namespace

QtEventTarget::Running::Running() {
    ++sRunning;
}

QtEventTarget::Running::~Running() {
    if (--sRunning == 0)
        DeleteRetired();
}

QtEventTarget::Drawing::Drawing() {
    ++sDrawing;
}

QtEventTarget::Drawing::~Drawing() {
    --sDrawing;
}

bool QtEventTarget::event(QEvent* event) {
    // This one deletes the widget.
    if (event->type() == QEvent::DeferredDelete)
        return QWidget::event(event);
    const Running running;
    return HandleEvent(*event);
}

void QtEventTarget::RetireSafely() {
    fRetired = true;
    Rearrange();
}

void QtEventTarget::Rearrange() {
    if (sDrawing > 0) {
        QMetaObject::invokeMethod(
            this, [this] { Rearrange(); }, Qt::QueuedConnection);
        return;
    }
    const Running running;
    ArrangeNow();
    if (fRetired)
        sRetired.emplace_back(this);
}

} // namespace Kestrin
