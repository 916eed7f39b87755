#pragma once

#include <QApplication>
#include <exception>
#include <memory>

namespace Kestrin {

/// The toolkit's application object. What escapes from the handling of an event does not pass
/// through the toolkit: it is kept, every event loop ends, and whoever ran the loop throws it on.
class EventApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    /// Hands out what was kept, null if nothing was.
    std::exception_ptr TakeFailure();

private:
    std::exception_ptr fFailure;
};

/// Connects to the window system with the process's own arguments. Without a usable display it says
/// so on standard error and ends the process with status 1.
std::unique_ptr<EventApplication> StartToolkit();

} // namespace Kestrin
