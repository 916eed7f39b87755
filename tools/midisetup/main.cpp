#include "tools/messages/Messages.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Completion.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Usage.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

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
    program.formatter(std::make_shared<MidiSetup::HelpFormatter>());
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
        return MidiSetup::kExitDone;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return program.exit(error);
        throw MidiSetup::UsageFailure(MidiSetup::UsageProblem(program, words, error) + "\n" +
                                      Message("\"midisetup help\" explains the commands."));
    }
}

/// "help COMMAND" is another way to say "COMMAND --help".
std::vector<std::string> WordsOf(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && words.front() == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    }
    return words;
}

int Run(const MidiSetup::Action& action) {
    int exitCode = MidiSetup::kExitDone;
    std::string problem;
    try {
        exitCode = action();
    } catch (const std::exception& error) {
        const bool isUsage = dynamic_cast<const MidiSetup::UsageFailure*>(&error) != nullptr;
        problem = std::string(isUsage ? "" : "midisetup: ") + error.what();
        exitCode = isUsage ? MidiSetup::kExitUsage : MidiSetup::kExitFailed;
    }
    std::cout.flush();
    if (!std::cout && problem.empty()) {
        problem = "midisetup: " +
                  Message("standard output cannot be written, so that some of it is missing");
        exitCode = MidiSetup::kExitFailed;
    }
    if (!problem.empty())
        std::cerr << problem << "\n";
    return exitCode;
}

} // namespace

void MidiSetup::Explain(CLI::App* command, const std::string& details) {
    command->footer(details + "\n\n" + command->get_footer());
}

int main(int argc, char** argv) {
    UseLanguageOfUser();
    CLI::App program("", "midisetup");
    MidiSetup::Action chosen;
    Describe(program);
    MidiSetup::AddListCommands(program, chosen);
    MidiSetup::AddPropertyCommands(program, chosen);
    MidiSetup::AddPlaceCommand(program, chosen);
    MidiSetup::AddDeviceCommands(program, chosen);
    MidiSetup::AddConnectionCommands(program, chosen);
    MidiSetup::AddTransferCommands(program, chosen);
    MidiSetup::AddMixerCommands(program, chosen);
    MidiSetup::AddDemoCommand(program, chosen);
    MidiSetup::AddDoctorCommand(program, chosen);
    MidiSetup::AddPortsCommand(program, chosen);
    program.add_subcommand("help", Message("Explain the commands, or the one that is named"));
    const std::vector<std::string> words = WordsOf(argc, argv);
    return Run([&]() -> int {
        // What the shells' completions ask; no command for a person.
        if (!words.empty() && words.front() == "--complete") {
            std::cout << MidiSetup::Completions(program, {words.begin() + 1, words.end()});
            return MidiSetup::kExitDone;
        }
        const int exitCode = Parse(program, words);
        return chosen ? chosen() : exitCode;
    });
}
