#include "Platform/Qt/QuitSignals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <utility>

namespace Kestrin {

namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

/// The end of the pipe that the handler writes to. A handler can reach nothing that is not global.
volatile sig_atomic_t gPipeEnd = -1;

extern "C" void HandleQuitSignal(int) {
    const int error = errno;
    const char byte = 0;
    // A full pipe tells the loop as much as one byte more would.
    [[maybe_unused]] const auto written = write(gPipeEnd, &byte, 1);
    errno = error;
}

} // namespace

struct QuitSignals::Data {
    std::array<int, 2> pipe{-1, -1};
    std::array<struct sigaction, kSignals.size()> previous{};
    std::unique_ptr<QSocketNotifier> notifier;
};

QuitSignals::QuitSignals(std::function<void()> onSignal)
    : fData(std::make_unique<Data>()) {
    if (pipe2(fData->pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    gPipeEnd = fData->pipe[1];
    fData->notifier = std::make_unique<QSocketNotifier>(fData->pipe[0], QSocketNotifier::Read);
    QObject::connect(fData->notifier.get(), &QSocketNotifier::activated,
                     [end = fData->pipe[0], onSignal = std::move(onSignal)] {
                         std::array<char, 16> bytes{};
                         [[maybe_unused]] const auto count = read(end, bytes.data(), bytes.size());
                         onSignal();
                     });
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        struct sigaction action = {};
        action.sa_handler = HandleQuitSignal;
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        sigaction(kSignals[i], &action, &fData->previous[i]);
        if (fData->previous[i].sa_handler == SIG_IGN)
            sigaction(kSignals[i], &fData->previous[i], nullptr);
    }
}

QuitSignals::~QuitSignals() {
    if (fData->notifier == nullptr)
        return;
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        sigaction(kSignals[i], &fData->previous[i], nullptr);
    // This may happen in the notifier's own call.
    fData->notifier->setEnabled(false);
    fData->notifier.release()->deleteLater();
    gPipeEnd = -1;
    close(fData->pipe[0]);
    close(fData->pipe[1]);
}

} // namespace Kestrin
