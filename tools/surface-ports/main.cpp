#include "Surfaces/MidiObject.h"
#include "Surfaces/PlacedSurfaces.h"

#include "tools/messages/Messages.h"
#include "tools/messages/PrintableText.h"
#include "tools/messages/ServiceMessages.h"
#include "tools/surface-ports/AlsaSequencer.h"
#include "tools/surface-ports/PortKeeper.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <iostream>
#include <string_view>

namespace {

using namespace SurfacePorts;

constexpr int kWaitingMilliseconds = 1000;

std::string Usage() {
    return Message(
        "surface-ports keeps, for each group of control surfaces, one sequencer client with a port "
        "for\neach surface in the order of their positions. A mixer is connected to these once. It "
        "runs\nuntil it is ended.\n\n"
        "  surface-ports           run\n"
        "  surface-ports --list    show the ports of the running one, and who is connected to "
        "them\n"
        "  surface-ports --version print the version\n");
}

/// Whether no other process of this user has it; it is this one's from now until its end.
bool BecomeOnlyInstance() {
    const std::string name = "kestrin-surface-ports-" + std::to_string(getuid());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // Behind a zero byte stands a name that is no file, and goes with the process.
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    const auto size = offsetof(sockaddr_un, sun_path) + 1 + name.size();
    const int socketNumber = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    return bind(socketNumber, reinterpret_cast<const sockaddr*>(&address),
                static_cast<socklen_t>(size)) == 0;
}

/// Readable when the process is asked to end. To be called before any thread is made.
int EndingDescriptor() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

std::string DatabaseProblem() {
    const std::string problem = ServiceMessage(KestrinMIDICopyDatabaseProblem());
    return Message("%1 The ports stay as they are.",
                   problem.empty() ? Message("The MIDI database is not there.") : problem);
}

/// The ports, and what was said about them.
class Keeping {
public:
    /// Brings the ports to what the service knows now, and tells a person what can't be had: each
    /// thing once, until it is over.
    void Look();
    /// Whether to look again before long, though nothing will tell.
    bool IsWaiting() const { return fIsWaiting; }

private:
    bool HasSequencer(std::set<std::string>& complaints);

    std::unique_ptr<Sequencer> fSequencer;
    std::optional<PortKeeper> fKeeper;
    std::set<std::string> fSaid;
    bool fIsWaiting = false;
};

bool Keeping::HasSequencer(std::set<std::string>& complaints) {
    if (fSequencer)
        return true;
    const KestrinMIDISequencerState state = KestrinMIDIGetSequencerState();
    if (state == kKestrinMIDISequencerReady)
        fSequencer = OpenSequencer();
    if (fSequencer)
        fKeeper.emplace(*fSequencer);
    else if (state == kKestrinMIDISequencerReady)
        complaints.insert(Message("The sequencer has no room for this program."));
    else
        complaints.insert(state == kKestrinMIDISequencerMissing
                              ? Message("This machine has no sequencer now; waiting for one.")
                              : Message("The sequencer may not be opened by this user; waiting."));
    return fSequencer != nullptr;
}

void Keeping::Look() {
    std::set<std::string> complaints;
    const std::optional<Plan> plan = ReadPlan();
    if (!plan)
        complaints.insert(DatabaseProblem());
    if (HasSequencer(complaints) && plan)
        complaints.merge(fKeeper->Keep(*plan));
    // Of a sequencer that comes into being the service tells; of room in one that is there, nobody.
    fIsWaiting = fSequencer ? fKeeper->IsWaiting()
                            : KestrinMIDIGetSequencerState() == kKestrinMIDISequencerReady;
    for (const std::string& complaint : complaints) {
        if (!fSaid.contains(complaint))
            std::cerr << complaint << std::endl;
    }
    fSaid = std::move(complaints);
}

int Run() {
    if (!BecomeOnlyInstance()) {
        std::cerr << Message("surface-ports is running already.") << "\n";
        return EXIT_FAILURE;
    }
    std::array<pollfd, 2> waiting{{{EndingDescriptor(), POLLIN, 0}, {-1, POLLIN, 0}}};
    MIDIClientRef client = 0;
    MIDIClientCreate(nullptr, nullptr, nullptr, &client);
    waiting[1].fd = KestrinMIDIClientGetDescriptor(client);
    Keeping keeping;
    while (waiting[0].revents == 0) {
        KestrinMIDIClientDeliver(client);
        keeping.Look();
        poll(waiting.data(), waiting.size(), keeping.IsWaiting() ? kWaitingMilliseconds : -1);
    }
    return EXIT_SUCCESS;
}

/// What stands behind the port, by the plan of now.
std::string UnitBehind(const Plan& plan, const OpenPort& port) {
    for (const Group& group : plan) {
        const auto place = static_cast<std::size_t>(port.address.port);
        if (SurfaceClientName(group.number) != port.client || place >= group.units.size())
            continue;
        const Unit& unit = group.units[place];
        const std::string name = Printable(unit.name);
        return unit.from ? Message("%1 at %2:%3", name, unit.from->client, unit.from->port)
                         : Message("%1, unplugged", name);
    }
    return Message("nothing");
}

int List() {
    const Plan plan = ReadPlan().value_or(Plan());
    const std::vector<OpenPort> ports = OpenPorts();
    for (const OpenPort& port : ports) {
        std::cout << Printable(port.client) << " (" << port.address.client << ":"
                  << port.address.port << ")  " << Printable(port.name) << "  <-> "
                  << UnitBehind(plan, port) << "\n    ";
        std::string connected;
        for (const std::string& client : port.connected)
            connected = Listed(connected, Printable(client));
        std::cout << (connected.empty() ? Message("connected: nobody")
                                        : Message("connected: %1", connected))
                  << "\n";
    }
    if (ports.empty())
        std::cout << Message(
                         "There are no surface ports: surface-ports does not run, or no surface "
                         "has a place in a group.")
                  << "\n";
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments) {
    UseLanguageOfUser();
    const std::string_view argument = count > 1 ? arguments[1] : "";
    if (count == 1)
        return Run();
    if (count == 2 && argument == "--list")
        return KestrinMIDIGetSequencerState() == kKestrinMIDISequencerReady
                   ? List()
                   : (std::cerr << Message("This machine has no sequencer.") << "\n", EXIT_FAILURE);
    if (count == 2 && (argument == "--help" || argument == "-h"))
        return std::cout << Usage(), EXIT_SUCCESS;
    if (count == 2 && argument == "--version")
        return std::cout << "surface-ports " SURFACE_PORTS_VERSION "\n", EXIT_SUCCESS;
    std::cerr << Usage();
    return 2;
}
