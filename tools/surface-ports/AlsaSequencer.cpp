#include "tools/surface-ports/AlsaSequencer.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <alsa/asoundlib.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <map>
#include <mutex>
#include <set>
#include <thread>

namespace SurfacePorts {

namespace {

struct SequencerCloser {
    void operator()(snd_seq_t* sequencer) const { snd_seq_close(sequencer); }
};
using Handle = std::unique_ptr<snd_seq_t, SequencerCloser>;

constexpr unsigned int kHiddenPort =
    SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT;
constexpr unsigned int kMixerPort = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_WRITE |
                                    SND_SEQ_PORT_CAP_DUPLEX | SND_SEQ_PORT_CAP_SUBS_READ |
                                    SND_SEQ_PORT_CAP_SUBS_WRITE;
constexpr int kMarkPort = 253; // the last one that the sequencer allows
constexpr int kAnyPort = -1;
constexpr std::size_t kPool = 2000;      // events that wait to be read: the most that it allows
constexpr std::size_t kBuffer = 1 << 17; // bytes: more than such a pool full of one long event

Handle OpenClient(const std::string& name) {
    snd_seq_t* opened = nullptr;
    if (snd_seq_open(&opened, "hw", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK) < 0)
        return nullptr;
    Handle handle(opened);
    snd_seq_set_client_name(opened, name.c_str());
    snd_seq_set_client_pool_input(opened, kPool);
    snd_seq_set_input_buffer_size(opened, kBuffer);
    return handle;
}

/// The number of the new port, or an error below 0.
int CreatePort(const Handle& client, const std::string& name, unsigned int capabilities,
               int number) {
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_alloca(&info);
    snd_seq_port_info_set_name(info, name.c_str());
    snd_seq_port_info_set_capability(info, capabilities);
    snd_seq_port_info_set_type(info, SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_SOFTWARE |
                                         SND_SEQ_PORT_TYPE_PORT);
    snd_seq_port_info_set_midi_channels(info, 16);
    if (number != kAnyPort) {
        snd_seq_port_info_set_port_specified(info, 1);
        snd_seq_port_info_set_port(info, number);
    }
    const int status = snd_seq_create_port(client.get(), info);
    return status < 0 ? status : snd_seq_port_info_get_port(info);
}

/// What is no MIDI stays where it is: the sequencer's own messages, above all.
bool IsMIDI(const snd_seq_event_t& event) {
    return event.type == SND_SEQ_EVENT_SYSEX ||
           (event.type >= SND_SEQ_EVENT_NOTE && event.type <= SND_SEQ_EVENT_SENSING);
}

/// Sends an event on to whoever is connected to the port, at once, whatever queue it came by.
void Send(snd_seq_t* client, int port, snd_seq_event_t& event) {
    snd_seq_ev_set_source(&event, static_cast<unsigned char>(port));
    snd_seq_ev_set_subs(&event);
    snd_seq_ev_set_direct(&event);
    snd_seq_event_output_direct(client, &event);
}

class AlsaSequencer final : public Sequencer {
public:
    explicit AlsaSequencer(Handle units);
    ~AlsaSequencer() override;

    bool OpenGroup(SInt32 group, const std::string& name) override;
    void CloseGroup(SInt32 group) override;
    bool OpenPort(SInt32 group, int port, const std::string& name) override;
    void RenamePort(SInt32 group, int port, const std::string& name) override;
    void ClosePort(SInt32 group, int port) override;
    LinkState Link(MIDIUniqueID unit, Direction direction, const Address& address) override;
    void Unlink(MIDIUniqueID unit, Direction direction) override;
    void Forget(MIDIUniqueID unit) override;
    void SetRoutes(const std::vector<Route>& routes) override;

private:
    struct GroupClient {
        Handle handle;
        std::map<int, int> unitPorts; ///< by the group's port
    };
    struct MixerPort {
        snd_seq_t* client;
        int port;
    };
    struct UnitLink {
        int port = kAnyPort;
        std::map<Direction, Address> addresses;
    };

    // Of the thread that asks

    int PortOf(MIDIUniqueID unit);
    void Subscription(snd_seq_port_subscribe_t* link, int port, Direction direction,
                      const Address& address) const;

    // Of the thread in which events pass

    void PassEvents();
    std::vector<pollfd> Sources();
    void PassFromMixers(GroupClient& group);
    void PassFromUnits();

    Handle fUnits;
    std::map<MIDIUniqueID, UnitLink> fLinks;
    int fBell = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    std::mutex fMutex; ///< of all below
    std::map<SInt32, GroupClient> fGroups;
    std::map<int, MixerPort> fMixerPorts; ///< by the unit's port
    std::set<int> fOwnClients;
    bool fIsEnding = false;

    std::thread fThread;
};

AlsaSequencer::AlsaSequencer(Handle units)
    : fUnits(std::move(units))
    , fOwnClients{snd_seq_client_id(fUnits.get())}
    , fThread([this] { PassEvents(); }) {}

AlsaSequencer::~AlsaSequencer() {
    {
        const std::lock_guard lock(fMutex);
        fIsEnding = true;
    }
    eventfd_write(fBell, 1);
    fThread.join();
    close(fBell);
}

bool AlsaSequencer::OpenGroup(SInt32 group, const std::string& name) {
    Handle handle = OpenClient(name);
    // The mark comes before the ports that it keeps out of the list of MIDI objects.
    if (!handle ||
        CreatePort(handle, KESTRIN_MIDI_UNLISTED_PORT, SND_SEQ_PORT_CAP_NO_EXPORT, kMarkPort) < 0)
        return false;
    const std::lock_guard lock(fMutex);
    fOwnClients.insert(snd_seq_client_id(handle.get()));
    fGroups[group].handle = std::move(handle);
    eventfd_write(fBell, 1);
    return true;
}

void AlsaSequencer::CloseGroup(SInt32 group) {
    const std::lock_guard lock(fMutex);
    const auto found = fGroups.find(group);
    snd_seq_t* const client = found->second.handle.get();
    fOwnClients.erase(snd_seq_client_id(client));
    std::erase_if(fMixerPorts,
                  [client](const auto& entry) { return entry.second.client == client; });
    fGroups.erase(found);
    eventfd_write(fBell, 1);
}

bool AlsaSequencer::OpenPort(SInt32 group, int port, const std::string& name) {
    return port < kMarkPort && CreatePort(fGroups[group].handle, name, kMixerPort, port) >= 0;
}

void AlsaSequencer::RenamePort(SInt32 group, int port, const std::string& name) {
    snd_seq_t* const client = fGroups[group].handle.get();
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_alloca(&info);
    if (snd_seq_get_port_info(client, port, info) < 0)
        return;
    snd_seq_port_info_set_name(info, name.c_str());
    snd_seq_set_port_info(client, port, info);
}

void AlsaSequencer::ClosePort(SInt32 group, int port) {
    snd_seq_delete_simple_port(fGroups[group].handle.get(), port);
}

int AlsaSequencer::PortOf(MIDIUniqueID unit) {
    int& port = fLinks[unit].port;
    if (port < 0)
        port = CreatePort(fUnits, "Unit", kHiddenPort, kAnyPort);
    return port;
}

void AlsaSequencer::Subscription(snd_seq_port_subscribe_t* link, int port, Direction direction,
                                 const Address& address) const {
    const auto client = [](int number) { return static_cast<unsigned char>(number); };
    const snd_seq_addr_t own{client(snd_seq_client_id(fUnits.get())), client(port)};
    const snd_seq_addr_t other{client(address.client), client(address.port)};
    snd_seq_port_subscribe_set_sender(link, direction == Direction::FromUnit ? &other : &own);
    snd_seq_port_subscribe_set_dest(link, direction == Direction::FromUnit ? &own : &other);
}

LinkState AlsaSequencer::Link(MIDIUniqueID unit, Direction direction, const Address& address) {
    const int port = PortOf(unit);
    if (port < 0)
        return LinkState::Gone;
    std::map<Direction, Address>& addresses = fLinks[unit].addresses;
    if (const auto last = addresses.find(direction);
        last != addresses.end() && last->second != address)
        Unlink(unit, direction);
    addresses[direction] = address;
    snd_seq_port_subscribe_t* link = nullptr;
    snd_seq_port_subscribe_alloca(&link);
    Subscription(link, port, direction, address);
    if (snd_seq_get_port_subscription(fUnits.get(), link) == 0)
        return LinkState::Linked;
    const int status = snd_seq_subscribe_port(fUnits.get(), link);
    if (status == -EBUSY || status == -EAGAIN)
        return LinkState::Held;
    return status == 0 ? LinkState::Linked : LinkState::Gone;
}

void AlsaSequencer::Unlink(MIDIUniqueID unit, Direction direction) {
    const auto found = fLinks.find(unit);
    if (found == fLinks.end())
        return;
    std::map<Direction, Address>& addresses = found->second.addresses;
    const auto last = addresses.find(direction);
    if (last == addresses.end())
        return;
    snd_seq_port_subscribe_t* link = nullptr;
    snd_seq_port_subscribe_alloca(&link);
    Subscription(link, found->second.port, direction, last->second);
    snd_seq_unsubscribe_port(fUnits.get(), link);
    addresses.erase(last);
}

void AlsaSequencer::Forget(MIDIUniqueID unit) {
    const auto found = fLinks.find(unit);
    if (found == fLinks.end())
        return;
    snd_seq_delete_simple_port(fUnits.get(), found->second.port); // with its links
    fLinks.erase(found);
}

void AlsaSequencer::SetRoutes(const std::vector<Route>& routes) {
    const std::lock_guard lock(fMutex);
    fMixerPorts.clear();
    for (auto& [number, group] : fGroups)
        group.unitPorts.clear();
    for (const Route& route : routes) {
        const auto group = fGroups.find(route.group);
        const int unitPort = PortOf(route.unit);
        if (group == fGroups.end() || unitPort < 0)
            continue;
        group->second.unitPorts[route.port] = unitPort;
        fMixerPorts[unitPort] = {group->second.handle.get(), route.port};
    }
}

void AlsaSequencer::PassEvents() {
    for (std::vector<pollfd> sources = Sources(); !sources.empty(); sources = Sources()) {
        if (poll(sources.data(), sources.size(), -1) < 0)
            continue;
        eventfd_t rings = 0;
        eventfd_read(fBell, &rings);
        const std::lock_guard lock(fMutex);
        for (auto& [number, group] : fGroups)
            PassFromMixers(group);
        PassFromUnits();
    }
}

/// Nothing once it ends.
std::vector<pollfd> AlsaSequencer::Sources() {
    const std::lock_guard lock(fMutex);
    if (fIsEnding)
        return {};
    std::vector<pollfd> sources{{fBell, POLLIN, 0}, {-1, POLLIN, 0}};
    snd_seq_poll_descriptors(fUnits.get(), &sources.back(), 1, POLLIN);
    for (const auto& [number, group] : fGroups) {
        sources.push_back({-1, POLLIN, 0});
        snd_seq_poll_descriptors(group.handle.get(), &sources.back(), 1, POLLIN);
    }
    return sources;
}

void AlsaSequencer::PassFromMixers(GroupClient& group) {
    snd_seq_event_t* event = nullptr;
    for (int status = 0; (status = snd_seq_event_input(group.handle.get(), &event)) != -EAGAIN;) {
        if (status == -ENOSPC)
            continue;
        if (status < 0)
            return;
        // Who connects these ports to each other makes no unit talk to another, nor to itself.
        const bool isOwn = fOwnClients.contains(event->source.client);
        const auto unitPort = group.unitPorts.find(event->dest.port);
        if (IsMIDI(*event) && !isOwn && unitPort != group.unitPorts.end())
            Send(fUnits.get(), unitPort->second, *event);
    }
}

void AlsaSequencer::PassFromUnits() {
    snd_seq_event_t* event = nullptr;
    for (int status = 0; (status = snd_seq_event_input(fUnits.get(), &event)) != -EAGAIN;) {
        if (status == -ENOSPC)
            continue;
        if (status < 0)
            return;
        const auto mixerPort = fMixerPorts.find(event->dest.port);
        if (IsMIDI(*event) && mixerPort != fMixerPorts.end())
            Send(mixerPort->second.client, mixerPort->second.port, *event);
    }
}

// Showing what is open

std::string NameOfClient(const Handle& own, int client) {
    snd_seq_client_info_t* info = nullptr;
    snd_seq_client_info_alloca(&info);
    return snd_seq_get_any_client_info(own.get(), client, info) < 0
               ? std::string()
               : snd_seq_client_info_get_name(info);
}

void AddConnected(const Handle& own, const Address& port, snd_seq_query_subs_type_t direction,
                  std::set<std::string>& connected) {
    const snd_seq_addr_t root{static_cast<unsigned char>(port.client),
                              static_cast<unsigned char>(port.port)};
    snd_seq_query_subscribe_t* query = nullptr;
    snd_seq_query_subscribe_alloca(&query);
    snd_seq_query_subscribe_set_root(query, &root);
    snd_seq_query_subscribe_set_type(query, direction);
    for (int i = 0; snd_seq_query_subscribe_set_index(query, i),
             snd_seq_query_port_subscribers(own.get(), query) >= 0;
         ++i)
        connected.insert(NameOfClient(own, snd_seq_query_subscribe_get_addr(query)->client));
}

bool IsMarked(const Handle& own, int client) {
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_alloca(&info);
    return snd_seq_get_any_port_info(own.get(), client, kMarkPort, info) == 0 &&
           snd_seq_port_info_get_name(info) == std::string(KESTRIN_MIDI_UNLISTED_PORT);
}

void AddPortsOf(const Handle& own, int client, std::vector<OpenPort>& ports) {
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_alloca(&info);
    snd_seq_port_info_set_client(info, client);
    snd_seq_port_info_set_port(info, -1);
    while (snd_seq_query_next_port(own.get(), info) >= 0) {
        const Address address{client, snd_seq_port_info_get_port(info)};
        if (address.port == kMarkPort)
            continue;
        std::set<std::string> connected;
        AddConnected(own, address, SND_SEQ_QUERY_SUBS_READ, connected);
        AddConnected(own, address, SND_SEQ_QUERY_SUBS_WRITE, connected);
        ports.push_back({NameOfClient(own, client),
                         address,
                         snd_seq_port_info_get_name(info),
                         {connected.begin(), connected.end()}});
    }
}

} // namespace

std::unique_ptr<Sequencer> OpenSequencer() {
    Handle units = OpenClient("Surface Ports");
    return units ? std::make_unique<AlsaSequencer>(std::move(units)) : nullptr;
}

std::vector<OpenPort> OpenPorts() {
    std::vector<OpenPort> ports;
    const Handle own = OpenClient("Surface Ports' list");
    if (!own)
        return ports;
    snd_seq_client_info_t* info = nullptr;
    snd_seq_client_info_alloca(&info);
    snd_seq_client_info_set_client(info, -1);
    while (snd_seq_query_next_client(own.get(), info) >= 0) {
        const int client = snd_seq_client_info_get_client(info);
        if (IsMarked(own, client))
            AddPortsOf(own, client, ports);
    }
    return ports;
}

} // namespace SurfacePorts
