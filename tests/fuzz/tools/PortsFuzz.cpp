#include "Surfaces/PlacedSurfaces.h"

#include "tests/fuzz/Require.h"
#include "tools/surface-ports/AlsaSequencer.h"
#include "tools/surface-ports/PortKeeper.h"

#include <alsa/asoundlib.h>
#include <fuzzer/FuzzedDataProvider.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <set>

// The bytes are what happens to surface-ports: units are placed, plugged and unplugged, ports wired
// to each other, and events come from both sides. Each event reaches the other end of its unit,
// whole and in order, and nobody else hears anything.
//
// The kernel's sequencer stands here in the place of the ALSA library's functions that ask it.

using namespace SurfacePorts;

namespace {

using Place = std::pair<int, int>; // a client's number and a port of it

struct Event {
    snd_seq_event_t head{};
    std::string bytes; ///< of one of variable length

    std::string Told() const {
        const auto* const data = reinterpret_cast<const char*>(&head.data);
        return static_cast<char>(head.type) +
               (snd_seq_ev_is_variable(&head) ? bytes : std::string(data, sizeof head.data));
    }
};

constexpr int kMixer = 200; // its ports are numbered by the client and the port they listen to

std::mutex sMutex; // of all below
std::condition_variable sIsDrained;
std::map<int, snd_seq_t*> sClients;
std::set<std::pair<Place, Place>> sSubscriptions;
std::map<Place, std::vector<std::string>> sHeard;

} // namespace

struct _snd_seq {
    int number = 128;
    int bell = eventfd(0, EFD_NONBLOCK);
    bool isDrained = true;
    std::string name;
    std::set<int> ports;
    std::deque<Event> waiting;
    Event current;
};

namespace {

void Arrive(const Place& place, Event event) {
    const auto client = sClients.find(place.first);
    if (client == sClients.end()) {
        sHeard[place].push_back(event.Told());
        return;
    }
    event.head.dest.port = static_cast<unsigned char>(place.second);
    client->second->waiting.push_back(std::move(event));
    client->second->isDrained = false;
    eventfd_write(client->second->bell, 1);
}

void Emit(const Place& place, Event event) {
    event.head.source.client = static_cast<unsigned char>(place.first);
    for (const auto& [from, to] : sSubscriptions) {
        if (from == place)
            Arrive(to, event);
    }
}

std::pair<Place, Place> EndsOf(const snd_seq_port_subscribe_t* link) {
    const snd_seq_addr_t& from = *snd_seq_port_subscribe_get_sender(link);
    const snd_seq_addr_t& to = *snd_seq_port_subscribe_get_dest(link);
    return {{from.client, from.port}, {to.client, to.port}};
}

} // namespace

int snd_seq_open(snd_seq_t** client, const char*, int, int) {
    const std::lock_guard lock(sMutex);
    *client = new snd_seq_t;
    while (!sClients.try_emplace((*client)->number, *client).second)
        ++(*client)->number;
    return 0;
}

int snd_seq_close(snd_seq_t* client) {
    const std::lock_guard lock(sMutex);
    std::erase_if(sSubscriptions, [client](const auto& ends) {
        return ends.first.first == client->number || ends.second.first == client->number;
    });
    sClients.erase(client->number);
    close(client->bell);
    delete client;
    return 0;
}

int snd_seq_client_id(snd_seq_t* client) {
    return client->number;
}
int snd_seq_set_client_name(snd_seq_t* client, const char* name) {
    client->name = name;
    return 0;
}
int snd_seq_set_client_pool_input(snd_seq_t*, std::size_t) {
    return 0;
}
int snd_seq_set_input_buffer_size(snd_seq_t*, std::size_t) {
    return 0;
}
int snd_seq_get_port_info(snd_seq_t*, int, snd_seq_port_info_t*) {
    return 0;
}
int snd_seq_set_port_info(snd_seq_t*, int, snd_seq_port_info_t*) {
    return 0;
}

int snd_seq_create_port(snd_seq_t* client, snd_seq_port_info_t* info) {
    const std::lock_guard lock(sMutex);
    int port = snd_seq_port_info_get_port_specified(info) ? snd_seq_port_info_get_port(info) : 0;
    while (!client->ports.insert(port).second)
        ++port;
    snd_seq_port_info_set_port(info, port);
    if (snd_seq_port_info_get_capability(info) & SND_SEQ_PORT_CAP_SUBS_READ)
        sSubscriptions.insert({{client->number, port}, {kMixer, client->number * 256 + port}});
    return 0;
}

int snd_seq_delete_simple_port(snd_seq_t* client, int port) {
    const std::lock_guard lock(sMutex);
    const Place gone{client->number, port};
    std::erase_if(sSubscriptions,
                  [&gone](const auto& ends) { return ends.first == gone || ends.second == gone; });
    client->ports.erase(port);
    return 0;
}

int snd_seq_get_port_subscription(snd_seq_t*, snd_seq_port_subscribe_t* link) {
    const std::lock_guard lock(sMutex);
    return sSubscriptions.contains(EndsOf(link)) ? 0 : -ENOENT;
}
int snd_seq_subscribe_port(snd_seq_t*, snd_seq_port_subscribe_t* link) {
    const std::lock_guard lock(sMutex);
    return sSubscriptions.insert(EndsOf(link)).second ? 0 : -EBUSY;
}
int snd_seq_unsubscribe_port(snd_seq_t*, snd_seq_port_subscribe_t* link) {
    const std::lock_guard lock(sMutex);
    return sSubscriptions.erase(EndsOf(link)) == 1 ? 0 : -ENOENT;
}

int snd_seq_poll_descriptors(snd_seq_t* client, pollfd* waiting, unsigned int, short events) {
    *waiting = {client->bell, events, 0};
    return 1;
}

int snd_seq_event_input(snd_seq_t* client, snd_seq_event_t** event) {
    const std::lock_guard lock(sMutex);
    if (client->waiting.empty()) {
        eventfd_t rings = 0;
        eventfd_read(client->bell, &rings);
        client->isDrained = true;
        sIsDrained.notify_all();
        return -EAGAIN;
    }
    client->current = std::move(client->waiting.front());
    client->waiting.pop_front();
    *event = &client->current.head;
    if (snd_seq_ev_is_variable(*event)) {
        (*event)->data.ext.ptr = client->current.bytes.data();
        (*event)->data.ext.len = static_cast<unsigned int>(client->current.bytes.size());
    }
    return (*event)->type == SND_SEQ_EVENT_NONE ? -ENOSPC : 0;
}

int snd_seq_event_output_direct(snd_seq_t* client, snd_seq_event_t* event) {
    const std::lock_guard lock(sMutex);
    Event sent{*event, {}};
    if (snd_seq_ev_is_variable(event))
        sent.bytes.assign(static_cast<const char*>(event->data.ext.ptr), event->data.ext.len);
    Require(snd_seq_ev_is_direct(event), "an event does not wait in a queue");
    Emit({client->number, event->source.port}, std::move(sent));
    return 0;
}

namespace {

constexpr int kUnits = 4;
constexpr int kGroups = 3;

Plan PlanIn(FuzzedDataProvider& bytes) {
    std::map<SInt32, Group> groups;
    for (int number = 0; number < kUnits; ++number) {
        const SInt32 group = bytes.ConsumeIntegralInRange(0, kGroups);
        const bool isFirst = bytes.ConsumeBool();
        const Address address{16 + number + (bytes.ConsumeBool() ? kUnits : 0), 0};
        Unit unit{number + 1, "Unit", {}, {}};
        if (bytes.ConsumeBool())
            unit.from = address;
        if (bytes.ConsumeBool())
            unit.to = address;
        std::vector<Unit>& units = groups[group].units;
        units.insert(isFirst ? units.begin() : units.end(), unit);
        groups[group].number = group;
    }
    Plan plan;
    for (const auto& [number, group] : groups) {
        if (number < kGroups) // the others have no place
            plan.push_back(group);
    }
    return plan;
}

Event EventIn(FuzzedDataProvider& bytes) {
    Event event;
    event.head.type =
        bytes.ConsumeBool() ? SND_SEQ_EVENT_SYSEX : bytes.ConsumeIntegral<std::uint8_t>();
    event.head.queue = bytes.ConsumeIntegral<std::uint8_t>();
    event.head.data.control.value = bytes.ConsumeIntegral<int>();
    if (event.head.type >= SND_SEQ_EVENT_SYSEX) {
        snd_seq_ev_set_variable(&event.head, 0, nullptr);
        event.bytes = bytes.ConsumeRandomLengthString(12);
    }
    return event;
}

bool IsPassed(const Event& event) {
    return event.head.type == SND_SEQ_EVENT_SYSEX ||
           (event.head.type >= SND_SEQ_EVENT_NOTE && event.head.type <= SND_SEQ_EVENT_SENSING);
}

class Studio {
public:
    void Step(FuzzedDataProvider& bytes) {
        const int kind = bytes.ConsumeIntegralInRange(0, 9);
        if (kind == 0 || fPlan.empty())
            return Keep(PlanIn(bytes));
        const Group& group = fPlan[bytes.ConsumeIntegralInRange<std::size_t>(0, fPlan.size() - 1)];
        const int place = bytes.ConsumeIntegralInRange(0, static_cast<int>(group.units.size()) - 1);
        const Unit& unit = group.units[static_cast<std::size_t>(place)];
        const std::lock_guard lock(sMutex);
        const Place port{ClientOf(group.number), place};
        if (kind == 1) {
            const Group& other =
                fPlan[bytes.ConsumeIntegralInRange<std::size_t>(0, fPlan.size() - 1)];
            sSubscriptions.insert({port, {ClientOf(other.number), 0}});
        } else if (kind < 6) {
            FromMixer(port, unit, EventIn(bytes));
        } else {
            FromUnit(port, unit, EventIn(bytes));
        }
    }

    void AwaitQuiet() {
        std::unique_lock lock(sMutex);
        sIsDrained.wait(lock, [] {
            return std::ranges::all_of(sClients,
                                       [](const auto& entry) { return entry.second->isDrained; });
        });
        Require(sHeard == fExpected, "each hears its own, in order");
    }

private:
    void Keep(const Plan& plan) {
        AwaitQuiet();
        fPlan = plan;
        Require(fKeeper.Keep(plan).empty(), "there is room for all");
    }

    static int ClientOf(SInt32 group) {
        const auto found = std::ranges::find_if(sClients, [&](const auto& entry) {
            return entry.second->name == SurfaceClientName(group);
        });
        Require(found != sClients.end(), "a group has a client");
        return found->first;
    }

    void FromMixer(const Place& port, const Unit& unit, Event event) {
        if (IsPassed(event) && unit.to)
            fExpected[{unit.to->client, unit.to->port}].push_back(event.Told());
        event.head.source.client = kMixer;
        Arrive(port, std::move(event));
    }

    void FromUnit(const Place& port, const Unit& unit, Event event) {
        if (!unit.from)
            return;
        if (IsPassed(event))
            fExpected[{kMixer, port.first * 256 + port.second}].push_back(event.Told());
        Emit({unit.from->client, unit.from->port}, std::move(event));
    }

    std::unique_ptr<Sequencer> fSequencer = OpenSequencer();
    PortKeeper fKeeper{*fSequencer};
    Plan fPlan;
    std::map<Place, std::vector<std::string>> fExpected;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sHeard.clear();
    sSubscriptions.clear();
    FuzzedDataProvider bytes(data, size);
    Studio studio;
    while (bytes.remaining_bytes() > 0)
        studio.Step(bytes);
    studio.AwaitQuiet();
    return 0;
}
