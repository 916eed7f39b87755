#pragma once

#include <functional>
#include <memory>

namespace Kestrin {

/// Turns the signals that ask a program to end into calls out of the event loop. Only the first
/// signal of each kind is taken: where the loop is stuck, the second one ends the process. Signals
/// that the process was told to ignore stay ignored. One at a time.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> onSignal);

    /// Gives the signals the meaning back that they had before.
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

private:
    struct Data;
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
