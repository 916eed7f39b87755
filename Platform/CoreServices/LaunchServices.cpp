#include "Platform/CoreServices/URLPath.h"

#include <CoreServices/Files.h>
#include <CoreServices/LaunchServices.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <vector>

namespace {

/// The program's full path by the PATH variable, or nothing.
std::string FindProgram(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path ? path : "/usr/local/bin:/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string program = (folder.empty() ? "." : folder) + "/" + name;
        if (access(program.c_str(), X_OK) == 0)
            return program;
    }
    return {};
}

/// The command that opens a document, without the document; empty when there is none.
std::vector<std::string> FindOpener() {
    if (std::string opener = FindProgram("xdg-open"); !opener.empty())
        return {opener};
    if (std::string opener = FindProgram("gio"); !opener.empty())
        return {opener, "open"};
    return {};
}

std::vector<char*> Arguments(std::vector<std::string>& command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    return arguments;
}

/// In the new process: nothing of this program's terminal, files or signals goes along. Only calls
/// that are allowed after a fork.
[[noreturn]] void BecomeOpener(char* const* arguments) {
    setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int nowhere = open("/dev/null", O_RDWR);
    for (int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, descriptor);
    close_range(STDERR_FILENO + 1, ~0U, 0);
    execv(arguments[0], arguments);
    _exit(127);
}

/// Starts a process that nobody has to wait for: its parent ends at once.
bool StartDetached(std::vector<std::string> command) {
    const std::vector<char*> arguments = Arguments(command);
    const pid_t child = fork();
    if (child == 0) {
        if (fork() == 0)
            BecomeOpener(arguments.data());
        _exit(0);
    }
    while (child > 0 && waitpid(child, nullptr, 0) == -1 && errno == EINTR) {
    }
    return child > 0;
}

} // namespace

OSStatus LSOpenCFURLRef(CFURLRef document, CFURLRef* launched) {
    if (launched)
        *launched = nullptr;
    const std::string path = PathOfURL(document);
    if (access(path.c_str(), F_OK) != 0)
        return fnfErr;
    std::vector<std::string> command = FindOpener();
    if (command.empty())
        return kLSApplicationNotFoundErr;
    command.push_back(path);
    return StartDetached(std::move(command)) ? noErr : kLSApplicationNotFoundErr;
}
