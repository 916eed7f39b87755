#include "tools/midisetup/JackServer.h"

#include <dlfcn.h>

#include <cerrno>

namespace MidiSetup {

namespace {

// Of <jack/types.h>.
constexpr int kNoStartServer = 0x01;
constexpr unsigned long kPortIsInput = 0x1;
constexpr unsigned long kPortIsOutput = 0x2;
constexpr char kMidiType[] = "8 bit raw midi";

} // namespace

/// The functions of libjack that are used.
struct JackServer::Library {
    void* (*open)(const char* name, int options, int* status, ...) = nullptr;
    int (*close)(void* client) = nullptr;
    const char** (*getPorts)(void* client, const char* namePattern, const char* typePattern,
                             unsigned long flags) = nullptr;
    int (*connect)(void* client, const char* source, const char* destination) = nullptr;
    void (*free)(void* pointer) = nullptr;
    void (*setErrorFunction)(void (*print)(const char*)) = nullptr;
    void (*setInfoFunction)(void (*print)(const char*)) = nullptr;

    /// False where the library or one of them is missing. It stays loaded.
    bool Load() {
        void* const library = dlopen("libjack.so.0", RTLD_NOW | RTLD_LOCAL);
        const auto find = [library](const char* name, auto& function) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
                library ? dlsym(library, name) : nullptr);
            return function != nullptr;
        };
        return find("jack_client_open", open) && find("jack_client_close", close) &&
               find("jack_get_ports", getPorts) && find("jack_connect", connect) &&
               find("jack_free", free) && find("jack_set_error_function", setErrorFunction) &&
               find("jack_set_info_function", setInfoFunction);
    }
};

JackServer::JackServer()
    : fLibrary(std::make_unique<Library>()) {}

JackServer::~JackServer() {
    if (fClient)
        fLibrary->close(fClient);
}

bool JackServer::Open() {
    if (!fLibrary->Load())
        return false;
    const auto silent = [](const char*) {}; // "no server" is an answer here, no fault
    fLibrary->setErrorFunction(silent);
    fLibrary->setInfoFunction(silent);
    fClient = fLibrary->open("midisetup", kNoStartServer, nullptr);
    return fClient != nullptr;
}

std::unique_ptr<JackServer> JackServer::Connect() {
    std::unique_ptr<JackServer> server(new JackServer);
    return server->Open() ? std::move(server) : nullptr;
}

std::vector<std::string> JackServer::MidiPorts(Direction direction) const {
    const unsigned long flag = direction == Direction::kOutputs ? kPortIsOutput : kPortIsInput;
    const char** const names = fLibrary->getPorts(fClient, nullptr, kMidiType, flag);
    std::vector<std::string> ports;
    for (const char** name = names; name && *name; ++name)
        ports.emplace_back(*name);
    if (names)
        fLibrary->free(names);
    return ports;
}

bool JackServer::Connect(const std::string& output, const std::string& input) const {
    const int result = fLibrary->connect(fClient, output.c_str(), input.c_str());
    return result == 0 || result == EEXIST;
}

} // namespace MidiSetup
