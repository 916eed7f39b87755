#include "Platform/Qt/QtWidgets.h"

#include <QEvent>

namespace Kestrin {

bool QtEventTarget::event(QEvent* event) {
    ++fEventsRunning;
    const bool handled = HandleEvent(*event);
    if (--fEventsRunning == 0 && fRetired)
        deleteLater();
    return handled;
}

void QtEventTarget::RetireSafely() {
    hide();
    setParent(nullptr);
    fRetired = true;
    if (fEventsRunning == 0)
        deleteLater();
}

void Retire(QWidget* widget) {
    widget->hide();
    widget->setParent(nullptr);
    widget->deleteLater();
}

} // namespace Kestrin
