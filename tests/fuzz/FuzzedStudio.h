#pragma once

#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"
#include "tests/fuzz/Require.h"

#include <filesystem>
#include <string>
#include <vector>

/// What the fuzz targets of the service and its tools share: a folder in memory with the database,
/// a sequencer that shows what is plugged in, and midisetup run within the process.
namespace FuzzedStudio {

using KestrinMIDI::SequencerSnapshot;

/// A database of that content and nothing else in the folder, which is the working folder.
void Begin(const std::string& database);
/// Runs statements of SQL on the database, as far as they can be run and soon end.
void RunSQL(const std::string& statements);
/// The content of a database with one unit plugged in and a surface cabled to an interface: the
/// same at each start, the unique IDs counting from 1001.
const std::string& SmallStudio();
/// The content of the database file now.
std::string Database();

void PlugIn(SequencerSnapshot snapshot);
/// A unit with one port, and a program.
SequencerSnapshot OneUnit();

/// Whether it is well-formed UTF-8 without control characters but for line feeds and tabs.
bool IsPlainText(const std::string& text);

struct Answer {
    int exitCode = 0;
    std::string output;
    std::string errors;
};

/// Runs midisetup. It must end with a code of its own, with words where it failed, and what it says
/// must be text that a terminal shows as it is.
Answer MidiSetup(const std::vector<std::string>& words, const std::string& input = "");

} // namespace FuzzedStudio
