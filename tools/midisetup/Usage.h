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

/// Help in the user's language, its columns by what characters take on a terminal.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter();
    std::string make_group(std::string group, bool isPositional,
                           std::vector<const CLI::Option*> options) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
};

/// Has the option take whole numbers of this range alone.
void Restrict(CLI::Option* option, int first, int last);

/// What is wrong with a command line that was not understood: the word that is, and what may stand
/// in its place.
std::string UsageProblem(CLI::App& program, const std::vector<std::string>& words,
                         const CLI::ParseError& error);

} // namespace MidiSetup
