#pragma once

#include "tools/midisetup/Changes.h"

#include <CoreMIDI/MIDIReading.h>

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>

namespace MidiSetup {

/// What the command line asks for; answers the exit code. May throw Failure.
using Action = std::function<int()>;

/// Each adds its commands to the program; a command that is given sets `chosen`.
void AddListCommands(CLI::App& program, Action& chosen);
void AddPropertyCommands(CLI::App& program, Action& chosen);
void AddPlaceCommand(CLI::App& program, Action& chosen);
void AddDeviceCommands(CLI::App& program, Action& chosen);
void AddConnectionCommands(CLI::App& program, Action& chosen);
void AddTransferCommands(CLI::App& program, Action& chosen);
void AddMixerCommands(CLI::App& program, Action& chosen);
void AddDemoCommand(CLI::App& program, Action& chosen);
void AddDoctorCommand(CLI::App& program, Action& chosen);
void AddPortsCommand(CLI::App& program, Action& chosen);

/// Adds what the help of `command` alone tells, above the footer that all commands share.
void Explain(CLI::App* command, const std::string& details);

/// Makes `run`, which takes the options, what `command` does. The options live as long as the
/// command.
template <typename Options, typename Run>
std::shared_ptr<Options> OptionsOf(CLI::App* command, Action& chosen, Run run) {
    auto options = std::make_shared<Options>();
    command->callback(
        [&chosen, options, run] { chosen = [options, run] { return run(*options); }; });
    return options;
}

template <typename Options>
std::shared_ptr<Options> OptionsFor(CLI::App* command, Action& chosen, int (*run)(const Options&)) {
    return OptionsOf<Options>(command, chosen, run);
}

/// For a command that tells what there is, all of it as of one moment.
template <typename Options>
std::shared_ptr<Options> OptionsForReading(CLI::App* command, Action& chosen,
                                           int (*run)(const Options&)) {
    return OptionsOf<Options>(command, chosen, [run](const Options& options) {
        const MIDIReading reading;
        return run(options);
    });
}

/// For a command that changes something. All that `run` reads and changes is one change; it answers
/// what to print when that is stored.
template <typename Options>
std::shared_ptr<Options> OptionsForChange(CLI::App* command, Action& chosen,
                                          std::string (*run)(const Options&)) {
    return OptionsOf<Options>(command, chosen, [run](const Options& options) {
        return InOneChange([&] { return run(options); });
    });
}

} // namespace MidiSetup
