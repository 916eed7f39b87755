#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace MidiSetup {

/// The commands of the program, or of a command.
std::vector<CLI::App*> CommandsOf(CLI::App& app);

/// The one of that name, or null.
CLI::App* CommandNamed(CLI::App& app, const std::string& name);

/// Whether the word of a command line is an option; a negative number is none.
bool IsOption(const std::string& word);

/// What is wrong with a command line that was not understood: the word that is, and what may stand
/// in its place.
std::string UsageProblem(CLI::App& program, const std::vector<std::string>& words,
                         const CLI::ParseError& error);

} // namespace MidiSetup
