#pragma once

#include "Platform/CoreMIDI/Database.h"

/// Checks that the file is a MIDI database that this version knows, writes the schema into a new
/// one and brings an older one up to date. A file that can't be used is left as it is.
DatabaseProblem PrepareSchema(sqlite3* connection, const std::filesystem::path& path);

std::string JournalMode(sqlite3* connection);
