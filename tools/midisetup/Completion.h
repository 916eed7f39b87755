#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace MidiSetup {

/// What a command line may have in the place of the last of `words`, by the program's own table of
/// commands and options: a line for each, the word, a tab and what it is. What was typed of that
/// word already only tells whether it is to be an option. A line without a word asks for the names
/// of files. Throws Failure when the studio is asked for and cannot be read.
std::string Completions(CLI::App& program, std::vector<std::string> words);

} // namespace MidiSetup
