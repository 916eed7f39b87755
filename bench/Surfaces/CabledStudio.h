#pragma once

#include <filesystem>

/// Makes the MIDI service use a database with `surfaces` surfaces, half of them in group 0 at one
/// position, each cabled to a port of an eight-port interface; all have their settings. The service
/// opens it at its next use. The studios of a process are built once and removed at its end.
/// Answers the database file.
std::filesystem::path UseCabledStudio(int surfaces);
