#include "Platform/CoreMIDI/Store/LockPatience.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace KestrinMIDI {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kPatience(5000);
constexpr milliseconds kLittlePatience(10);
constexpr milliseconds kMemory(1000);
// Often: a process that writes without a pause frees the lock for moments only.
constexpr milliseconds kBetweenTries(1);

std::atomic<Clock::time_point> sGaveUp;
thread_local bool sIsInHaste = false;

} // namespace

bool WaitForLock(int tries) {
    thread_local Clock::time_point sEnd;
    const Clock::time_point now = Clock::now();
    if (tries == 0) {
        const bool isInVain = sIsInHaste || now - sGaveUp.load() < kMemory;
        sEnd = now + (isInVain ? kLittlePatience : kPatience);
    }
    if (now >= sEnd) {
        if (!sIsInHaste)
            sGaveUp = now;
        return false;
    }
    std::this_thread::sleep_for(kBetweenTries);
    return true;
}

Haste::Haste() {
    sIsInHaste = true;
}

Haste::~Haste() {
    sIsInHaste = false;
}

void BePatient(sqlite3* connection) {
    sqlite3_busy_handler(
        connection, [](void*, int tries) { return WaitForLock(tries) ? 1 : 0; }, nullptr);
}

} // namespace KestrinMIDI
