#pragma once

#include "Platform/CoreMIDI/Store/SQLite.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <filesystem>
#include <string>

namespace KestrinMIDI {

/// What a reading of the whole file finds wrong, or the empty text. `rowsLost`: how many rows were
/// passed over when its objects were read.
std::string DamageIn(sqlite3* connection, std::size_t rowsLost);

/// Sets the damaged file aside and saves what can be read of it into a new one, as
/// KestrinMIDIRepairDatabase tells. The process has the file not open.
OSStatus RepairDatabase(const std::filesystem::path& path, std::filesystem::path& savedAs,
                        KestrinMIDIRepairCounts& counts);

} // namespace KestrinMIDI
