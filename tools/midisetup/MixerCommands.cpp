#include "tools/messages/Messages.h"
#include "tools/midisetup/Ardour.h"
#include "tools/midisetup/Commands.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/JackServer.h"
#include "tools/midisetup/Output.h"
#include "tools/midisetup/Studio.h"

#include <algorithm>
#include <iostream>
#include <set>

namespace MidiSetup {

namespace {

struct MixerOptions {
    std::string mixer;
    std::optional<SInt32> group;
};

/// One unit: its port on the sequencer, the mixer's port for it.
struct Row {
    int place;
    std::string surfacePort;
    std::string mixerEnding;
};

SInt32 OnlyGroup() {
    std::set<SInt32> groups;
    for (const PlacedSurface& surface : PlacedSurfaces())
        groups.insert(surface.group);
    if (groups.size() > 1)
        throw Failure(
            Message("there are surfaces in several groups; name one: midisetup connect-mixer "
                    "ardour GROUP"));
    return groups.empty() ? 0 : *groups.begin();
}

std::vector<Row> RowsOf(SInt32 group, const ArdourDevice& device) {
    std::vector<Row> rows;
    for (const PlacedSurface& surface : PlacedSurfaces()) {
        if (surface.group != group)
            continue;
        const int place = static_cast<int>(rows.size()) + 1;
        rows.push_back(
            {place, SurfacePortName(place, surface.name), ArdourPortEnding(device, place)});
    }
    return rows;
}

bool IsDigitAt(const std::string& text, std::size_t place) {
    return place < text.size() && text[place] >= '0' && text[place] <= '9';
}

/// Whether a port of the server stands for a port of the sequencer. The bridges name them
/// "a2j:CLIENT [130] (capture): PORT", "Midi-Bridge:CLIENT:(capture_0) PORT" and the like.
bool IsBridged(const std::string& name, const std::string& client, const std::string& port) {
    const std::size_t start = name.find(client);
    if (start == std::string::npos || IsDigitAt(name, start + client.size()))
        return false;
    const std::size_t found = name.find(port, start + client.size());
    return found != std::string::npos && !IsDigitAt(name, found - 1);
}

std::optional<std::string> FindBridged(const std::vector<std::string>& names,
                                       const std::string& client, const std::string& port) {
    const auto found = std::ranges::find_if(
        names, [&](const std::string& name) { return IsBridged(name, client, port); });
    return found == names.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::string> FindEnding(const std::vector<std::string>& names,
                                      const std::string& ending) {
    const auto found = std::ranges::find_if(
        names, [&](const std::string& name) { return name.ends_with(":" + ending); });
    return found == names.end() ? std::nullopt : std::optional(*found);
}

/// Tells what to choose by hand in Ardour's window, where its ports stand in this order.
int TellByHand(const ArdourDevice& device, const std::vector<Row>& rows) {
    std::cout
        << Message(
               "No JACK server runs here, so nothing was connected. In Ardour, under "
               "Preferences, Control Surfaces,\nMackie, choose the device \"%1\" and these ports "
               "for sending and receiving:",
               device.name)
        << "\n";
    for (const Row& row : rows) {
        const std::string port = Printable(row.surfacePort);
        std::cout << "  "
                  << (row.place == device.mainPlace
                          ? Message("Main at place %1: %2, %3", row.place, device.name, port)
                          : Message("Extender at place %1: %2, %3", row.place, device.name, port))
                  << "\n";
    }
    return kExitDone;
}

/// Connects one direction of one unit and says so. False where a port is missing.
bool ConnectOne(const JackServer& server, const std::optional<std::string>& output,
                const std::optional<std::string>& input, const std::string& missing) {
    if (!output || !input) {
        std::cerr << "midisetup: " << missing << "\n";
        return false;
    }
    if (!server.Connect(*output, *input))
        throw Failure(Message("the JACK server refused to connect %1 to %2", Printable(*output),
                              Printable(*input)));
    std::cout << Printable(*output) << " -> " << Printable(*input) << "\n";
    return true;
}

int ConnectRows(const JackServer& server, const ArdourDevice& device,
                const std::vector<Row>& rows) {
    const auto outputs = server.MidiPorts(JackServer::Direction::kOutputs);
    const auto inputs = server.MidiPorts(JackServer::Direction::kInputs);
    bool isWhole = true;
    for (const Row& row : rows) {
        const auto fromUnit = FindBridged(outputs, device.name, row.surfacePort);
        const auto toUnit = FindBridged(inputs, device.name, row.surfacePort);
        const auto fromMixer = FindEnding(outputs, "mackie control out" + row.mixerEnding);
        const auto toMixer = FindEnding(inputs, "mackie control in" + row.mixerEnding);
        const std::string missing =
            !fromUnit || !toUnit
                ? Message(
                      "the server shows no port %1 of %2; is surface-ports running, and a2jmidid "
                      "where the server is not PipeWire's?",
                      Printable(row.surfacePort), device.name)
                : Message(
                      "the server shows no port \"%1\"; in Ardour, switch on the Mackie control "
                      "surface with the device %2 (\"midisetup export --ardour\" writes it)",
                      "mackie control in" + row.mixerEnding, device.name);
        isWhole = ConnectOne(server, fromUnit, toMixer, missing) && isWhole;
        if (fromUnit && toMixer)
            isWhole = ConnectOne(server, fromMixer, toUnit, missing) && isWhole;
    }
    return isWhole ? kExitDone : kExitFailed;
}

int ConnectMixer(const MixerOptions& options) {
    RequireDatabase();
    const SInt32 group = options.group ? *options.group : OnlyGroup();
    const ArdourDevice device = ArdourDeviceOf(group);
    const std::vector<Row> rows = RowsOf(group, device);
    const std::unique_ptr<JackServer> server = JackServer::Connect();
    return server ? ConnectRows(*server, device, rows) : TellByHand(device, rows);
}

} // namespace

void AddMixerCommands(CLI::App& program, Action& chosen) {
    CLI::App* command = program.add_subcommand(
        "connect-mixer",
        Message("Connect a mixer's ports to the surface ports of a group, in order"));
    Explain(
        command,
        Message("Connects what a running JACK server shows, PipeWire's included; without one it "
                "tells\nwhich port to choose in which row. The mixer is connected once: the "
                "surface ports stay."));
    auto options = OptionsForReading(command, chosen, ConnectMixer);
    command->add_option("MIXER", options->mixer, "ardour")
        ->required()
        ->check(CLI::IsMember({"ardour"}));
    command->add_option("GROUP", options->group, Message("Needed where there are several"));
}

} // namespace MidiSetup
