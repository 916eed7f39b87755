#pragma once

#include "Platform/CoreMIDI/Store/ObjectStore.h"
#include "Platform/CoreMIDI/Store/SQLite.h"

namespace KestrinMIDI {

/// Keys, texts and data longer than this (bytes) are neither read nor written.
inline constexpr std::size_t kLongestValue = 1 << 20;
/// No object has more properties of its own.
inline constexpr std::size_t kMostProperties = 4096;

/// What came of reading a file.
struct LoadResult {
    int code;         ///< SQLITE_OK, or the error that ended the reading
    std::size_t lost; ///< rows that make no sense and were passed over
};

/// Reads all objects into an empty store, in one read transaction unless one is open already. Rows
/// of wrong types, values beyond the limits and objects without a proper owner are passed over.
LoadResult LoadObjects(sqlite3* connection, KeyTable& keys, ObjectStore& store);

/// What came of reading a damaged file.
struct SalvageResult {
    std::size_t lost;       ///< rows that make no sense and were passed over
    std::size_t unreadable; ///< objects that are known to stand there and could not be read whole
};

/// As LoadObjects, from a damaged file: what stands around the damage of each table.
SalvageResult SalvageObjects(sqlite3* connection, KeyTable& keys, ObjectStore& store);

} // namespace KestrinMIDI
