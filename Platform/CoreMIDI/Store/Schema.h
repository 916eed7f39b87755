#pragma once

#include "Platform/CoreMIDI/Store/Database.h"

namespace KestrinMIDI {

/// What came of preparing a file.
struct SchemaResult {
    DatabaseProblem problem;
    bool isWAL =
        false; ///< the file system lets processes share memory, as write-ahead logging needs
};

/// Checks that the file is a MIDI database that this version knows, writes the schema into a new
/// one and brings an older one up to date. A file that can't be used is left as it is.
SchemaResult PrepareSchema(sqlite3* connection, const std::filesystem::path& path);

} // namespace KestrinMIDI
