#pragma once

#include "Platform/CoreMIDI/Store/SQLite.h"

namespace KestrinMIDI {

/// Makes a connection wait for locks that other processes hold: up to 5 seconds. Once that was in
/// vain, further waits of this process give up soon, until a second went by without one: an action
/// of many calls so waits once, not once for each.
void BePatient(sqlite3* connection);

/// Sleeps a while before the next try for a lock; false when it is time to give up. `tries`: how
/// many failed before, from 0. For where SQLite answers "busy" without waiting by itself.
bool WaitForLock(int tries);

/// While one lives, its thread hardly waits for locks, and what it gives up makes nobody else give
/// up: for what can be written another time.
class Haste {
public:
    Haste();
    ~Haste();
    Haste(const Haste&) = delete;
    Haste& operator=(const Haste&) = delete;
};

} // namespace KestrinMIDI
