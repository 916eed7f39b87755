#include "tools/midisetup/CommandLine.h"

#include "tools/messages/Messages.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Completion.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Usage.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace MidiSetup {

namespace {

void Describe(CLI::App& program) {
    program.description(
        Message("Shows and changes the MIDI devices that programs find on this machine: "
                "the interfaces,\nwhat is cabled to their ports, and the settings of "
                "control surfaces."));
    program.footer(Message("An OBJECT is named by its unique ID, or by its name: \"Device\", "
                           "\"Device:Port\",\n\"Device:Port:source\" or "
                           "\"Device:Port:destination\".\n"
                           "KESTRIN_MIDI_DATABASE names another database file."));
    program.formatter(std::make_shared<HelpFormatter>());
    program.group(Message("Subcommands"));
    program.set_help_flag("-h,--help", Message("Print this help message and exit"));
    program.set_version_flag("--version", "midisetup " MIDISETUP_VERSION,
                             Message("Display program version information and exit"));
    program.require_subcommand(1);
}

int Parse(CLI::App& program, std::vector<std::string> words) {
    try {
        // The parser takes them from the back.
        program.parse(std::vector<std::string>(words.rbegin(), words.rend()));
        return kExitDone;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return program.exit(error);
        throw UsageFailure(UsageProblem(program, words, error) + "\n" +
                           Message("\"midisetup help\" explains the commands."));
    }
}

/// "help COMMAND" is another way to say "COMMAND --help".
std::vector<std::string> WithoutHelpCommand(std::vector<std::string> words) {
    if (!words.empty() && words.front() == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    }
    return words;
}

int Run(const Action& action) {
    int exitCode = kExitDone;
    std::string problem;
    try {
        exitCode = action();
    } catch (const std::exception& error) {
        const bool isUsage = dynamic_cast<const UsageFailure*>(&error) != nullptr;
        problem = std::string(isUsage ? "" : "midisetup: ") + error.what();
        exitCode = isUsage ? kExitUsage : kExitFailed;
    }
    std::cout.flush();
    if (!std::cout && problem.empty()) {
        problem = "midisetup: " +
                  Message("standard output cannot be written, so that some of it is missing");
        exitCode = kExitFailed;
    }
    if (!problem.empty())
        std::cerr << problem << "\n";
    return exitCode;
}

} // namespace

void Explain(CLI::App* command, const std::string& details) {
    command->footer(details + "\n\n" + command->get_footer());
}

int RunCommandLine(const std::vector<std::string>& given) {
    CLI::App program("", "midisetup");
    Action chosen;
    Describe(program);
    AddListCommands(program, chosen);
    AddPropertyCommands(program, chosen);
    AddPlaceCommand(program, chosen);
    AddDeviceCommands(program, chosen);
    AddConnectionCommands(program, chosen);
    AddTransferCommands(program, chosen);
    AddMixerCommands(program, chosen);
    AddDemoCommand(program, chosen);
    AddDoctorCommand(program, chosen);
    AddPortsCommand(program, chosen);
    program.add_subcommand("help", Message("Explain the commands, or the one that is named"));
    const std::vector<std::string> words = WithoutHelpCommand(given);
    return Run([&]() -> int {
        // What the shells' completions ask; no command for a person.
        if (!words.empty() && words.front() == "--complete") {
            std::cout << Completions(program, {words.begin() + 1, words.end()});
            return kExitDone;
        }
        const int exitCode = Parse(program, words);
        return chosen ? chosen() : exitCode;
    });
}

} // namespace MidiSetup
