#pragma once

#include <memory>
#include <string>
#include <vector>

namespace MidiSetup {

/// A running JACK server, PipeWire's included, seen through libjack (https://jackaudio.org/api/),
/// which is looked for when it is asked for: the tool works on machines that have none.
class JackServer {
public:
    /// Null where no server runs or libjack is missing.
    static std::unique_ptr<JackServer> Connect();
    ~JackServer();
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    enum class Direction {
        kOutputs,
        kInputs
    }; ///< what sends into the server's graph, what takes from it

    /// The names of all MIDI ports of a direction, "client:port".
    std::vector<std::string> MidiPorts(Direction direction) const;

    /// Whether the two are connected now, by this call or before.
    bool Connect(const std::string& output, const std::string& input) const;

private:
    struct Library;

    JackServer();
    bool Open();

    std::unique_ptr<Library> fLibrary;
    void* fClient = nullptr;
};

} // namespace MidiSetup
