#include "tools/messages/Messages.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <vector>

namespace MidiSetup {

namespace {

using std::filesystem::path;

struct PortsOptions {
    bool isEnabling = false;
    bool isDisabling = false;
};

enum class Output { Shown, Dropped };

/// Runs a program, by its path or its name, to its end. The exit code, or -1 if it can't be run.
int Run(std::vector<std::string> words, Output output) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    if (output == Output::Dropped) {
        posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    }
    pid_t child = 0;
    const int failed =
        posix_spawnp(&child, arguments[0], &files, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    int status = 0;
    if (failed != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

/// A file that belongs to this program, in the first of these places, seen from its own folder.
path Companion(const std::vector<const char*>& places) {
    std::error_code error;
    const path own = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* const place : places) {
        if (path file = (own / place).lexically_normal(); std::filesystem::exists(file, error))
            return file;
    }
    throw Failure(Message("surface-ports is not installed beside midisetup"));
}

path SurfacePorts() {
    return Companion({"surface-ports", "../surface-ports/surface-ports"});
}

void SystemctlForUser(const char* verb, const std::string& unit) {
    if (Run({"systemctl", "--user", verb, "--now", unit}, Output::Shown) != 0)
        throw Failure(Message("\"systemctl --user %1\" failed for surface-ports", verb));
}

int Ports(const PortsOptions& options) {
    const path program = SurfacePorts();
    if (!options.isEnabling && !options.isDisabling)
        return Run({program, "--list"}, Output::Shown) == 0 ? kExitDone : kExitFailed;
    if (Run({"systemctl", "--user", "show-environment"}, Output::Dropped) != 0)
        throw Failure(Message("there is no systemd here that looks after a user's services. Start\n"
                              "  %1\nwhen you log in, and end it to be without the ports.",
                              program.string()));
    if (options.isDisabling)
        SystemctlForUser("disable", "surface-ports.service");
    else
        SystemctlForUser("enable", Companion({"../lib/systemd/user/surface-ports.service",
                                              "../surface-ports/surface-ports.service"}));
    return kExitDone;
}

} // namespace

void AddPortsCommand(CLI::App& program, Action& chosen) {
    CLI::App* ports = program.add_subcommand(
        "ports",
        Message("Show the ports that surface-ports keeps for mixers, and who is connected"));
    auto options = OptionsFor(ports, chosen, Ports);
    auto* enable = ports->add_flag("--enable", options->isEnabling,
                                   Message("Start surface-ports now and whenever you log in"));
    ports->add_flag("--disable", options->isDisabling, Message("End it, now and for good"))
        ->excludes(enable);
}

} // namespace MidiSetup
