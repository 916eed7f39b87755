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

} // namespace

bool WaitForLock(int tries) {
    thread_local Clock::time_point sEnd;
    const Clock::time_point now = Clock::now();
    if (tries == 0)
        sEnd = now + (now - sGaveUp.load() < kMemory ? kLittlePatience : kPatience);
    if (now >= sEnd) {
        sGaveUp = now;
        return false;
    }
    std::this_thread::sleep_for(kBetweenTries);
    return true;
}

void BePatient(sqlite3* connection) {
    sqlite3_busy_handler(
        connection, [](void*, int tries) { return WaitForLock(tries) ? 1 : 0; }, nullptr);
}

} // namespace KestrinMIDI
