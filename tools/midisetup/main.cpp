#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"

#include <iostream>

namespace {

void Describe(CLI::App& program) {
    program.description("Shows and changes the MIDI devices that programs find on this machine: "
                        "the interfaces,\nwhat is cabled to their ports, and the settings of "
                        "control surfaces.");
    program.footer("An OBJECT is named by its unique ID, or by its name: \"Device\", "
                   "\"Device:Port\",\n\"Device:Port:source\" or \"Device:Port:destination\".\n"
                   "KESTRIN_MIDI_DATABASE names another database file.");
    program.set_version_flag("--version", "midisetup " MIDISETUP_VERSION);
    program.require_subcommand(1);
}

int Run(CLI::App& program, const MidiSetup::Action& chosen, int argc, char** argv) {
    try {
        program.parse(argc, argv);
        const int exitCode = chosen();
        std::cout.flush();
        return std::cout ? exitCode : MidiSetup::kExitFailed;
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? MidiSetup::kExitDone : MidiSetup::kExitUsage;
    } catch (const std::exception& error) {
        std::cout.flush();
        std::cerr << "midisetup: " << error.what() << "\n";
        return MidiSetup::kExitFailed;
    }
}

} // namespace

void MidiSetup::Explain(CLI::App* command, const std::string& details) {
    command->footer(details + "\n\n" + command->get_footer());
}

int main(int argc, char** argv) {
    CLI::App program("", "midisetup");
    MidiSetup::Action chosen;
    Describe(program);
    MidiSetup::AddListCommands(program, chosen);
    MidiSetup::AddPropertyCommands(program, chosen);
    MidiSetup::AddDeviceCommands(program, chosen);
    MidiSetup::AddConnectionCommands(program, chosen);
    MidiSetup::AddTransferCommands(program, chosen);
    MidiSetup::AddDemoCommand(program, chosen);
    MidiSetup::AddDoctorCommand(program, chosen);
    return Run(program, chosen, argc, argv);
}
