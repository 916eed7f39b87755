#include "tests/tools/RunProgram.h"

#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

namespace {

std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

int RunToItsEnd(const std::vector<std::string>& command,
                const posix_spawn_file_actions_t& streams) {
    std::vector<char*> arguments;
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, arguments[0], &streams, nullptr, arguments.data(), environ) != 0)
        return -1;
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& input) {
    const TemporaryFolder folder;
    const std::string in = folder / "in";
    const std::string out = folder / "out";
    const std::string err = folder / "err";
    std::ofstream(in, std::ios::binary) << input;

    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, in.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&streams, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT,
                                     0600);
    posix_spawn_file_actions_addopen(&streams, STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT,
                                     0600);
    std::vector<std::string> command{program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ProgramRun run;
    run.exitCode = RunToItsEnd(command, streams);
    posix_spawn_file_actions_destroy(&streams);
    run.output = ReadAll(out);
    run.errors = ReadAll(err);
    return run;
}
