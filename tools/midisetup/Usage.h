#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace MidiSetup {

/// What is wrong with a command line that was not understood: the word that is, and what may stand
/// in its place.
std::string UsageProblem(CLI::App& program, const std::vector<std::string>& words,
                         const CLI::ParseError& error);

} // namespace MidiSetup
