#pragma once

#include "Platform/CoreMIDI/Store/SQLite.h"

#include <CoreMIDI/CoreMIDI.h>

#include <string>

using namespace KestrinMIDI;

/// The database file of a studio of `surfaces` units with one port each, with their group settings;
/// made at the first call, removed when the program ends.
const std::string& StudioFile(int surfaces);

/// Makes the service use that file; it opens it at its next use.
void UseStudio(int surfaces);

/// A connection of its own to that file, set up as the service's.
ConnectionHolder ConnectTo(const std::string& file);
