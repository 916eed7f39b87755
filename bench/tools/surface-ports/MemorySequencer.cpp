#include "bench/tools/surface-ports/MemorySequencer.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <set>

namespace {

using namespace MemorySequencer;

constexpr int kFirstProgram = 128;
constexpr int kMostPorts = 256;

std::mutex sMutex; // of all below
std::condition_variable sIsDrained;
std::map<int, snd_seq_t*> sClients;
std::set<std::pair<Place, Place>> sLinks; // from, to
Hearing sHearing;

} // namespace

struct _snd_seq {
    int number = kFirstProgram;
    int bell = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
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
        if (sHearing)
            sHearing(place, event);
        return;
    }
    event.head.dest.port = static_cast<unsigned char>(place.second);
    client->second->waiting.push_back(std::move(event));
    client->second->isDrained = false;
    eventfd_write(client->second->bell, 1);
}

void PassOn(const Place& port, Event event) {
    event.head.source.client = static_cast<unsigned char>(port.first);
    for (auto link = sLinks.lower_bound({port, {}}); link != sLinks.end() && link->first == port;
         ++link)
        Arrive(link->second, event);
}

std::pair<Place, Place> EndsOf(const snd_seq_port_subscribe_t* link) {
    const snd_seq_addr_t& from = *snd_seq_port_subscribe_get_sender(link);
    const snd_seq_addr_t& to = *snd_seq_port_subscribe_get_dest(link);
    return {{from.client, from.port}, {to.client, to.port}};
}

template <typename IsGone>
void EraseLinks(IsGone isGone) {
    std::erase_if(sLinks,
                  [&](const auto& ends) { return isGone(ends.first) || isGone(ends.second); });
}

} // namespace

namespace MemorySequencer {

Place ListenerTo(const Place& port) {
    return {kMixer, port.first * kMostPorts + port.second};
}

int ClientNamed(const std::string& name) {
    const std::lock_guard lock(sMutex);
    const auto found = std::ranges::find_if(
        sClients, [&](const auto& entry) { return entry.second->name == name; });
    return found != sClients.end() ? found->first : 0;
}

void Connect(const Place& port, const Place& place) {
    const std::lock_guard lock(sMutex);
    sLinks.insert({port, place});
}

void Emit(const Place& port, Event event) {
    const std::lock_guard lock(sMutex);
    PassOn(port, std::move(event));
}

void Send(const Place& port, Event event) {
    const std::lock_guard lock(sMutex);
    event.head.source.client = kMixer;
    Arrive(port, std::move(event));
}

void Settle() {
    std::unique_lock lock(sMutex);
    sIsDrained.wait(lock, [] {
        return std::ranges::all_of(sClients,
                                   [](const auto& entry) { return entry.second->isDrained; });
    });
}

void Hear(Hearing hearing) {
    const std::lock_guard lock(sMutex);
    sHearing = std::move(hearing);
}

void PullOut(int client) {
    const std::lock_guard lock(sMutex);
    EraseLinks([client](const Place& place) { return place.first == client; });
}

} // namespace MemorySequencer

int snd_seq_open(snd_seq_t** client, const char* /*name*/, int /*streams*/, int /*mode*/) {
    const std::lock_guard lock(sMutex);
    *client = new snd_seq_t;
    while (!sClients.try_emplace((*client)->number, *client).second)
        ++(*client)->number;
    return 0;
}

int snd_seq_close(snd_seq_t* client) {
    const std::lock_guard lock(sMutex);
    EraseLinks([client](const Place& place) { return place.first == client->number; });
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
int snd_seq_set_client_pool_input(snd_seq_t* /*client*/, std::size_t /*events*/) {
    return 0;
}
int snd_seq_set_input_buffer_size(snd_seq_t* /*client*/, std::size_t /*bytes*/) {
    return 0;
}
int snd_seq_get_port_info(snd_seq_t* /*client*/, int /*port*/, snd_seq_port_info_t* /*info*/) {
    return 0;
}
int snd_seq_set_port_info(snd_seq_t* /*client*/, int /*port*/, snd_seq_port_info_t* /*info*/) {
    return 0;
}

int snd_seq_create_port(snd_seq_t* client, snd_seq_port_info_t* info) {
    const std::lock_guard lock(sMutex);
    int port = snd_seq_port_info_get_port_specified(info) ? snd_seq_port_info_get_port(info) : 0;
    while (!client->ports.insert(port).second)
        ++port;
    snd_seq_port_info_set_port(info, port);
    if ((snd_seq_port_info_get_capability(info) & SND_SEQ_PORT_CAP_SUBS_READ) != 0)
        sLinks.insert({{client->number, port}, ListenerTo({client->number, port})});
    return 0;
}

int snd_seq_delete_simple_port(snd_seq_t* client, int port) {
    const std::lock_guard lock(sMutex);
    const Place gone{client->number, port};
    EraseLinks([&gone](const Place& place) { return place == gone; });
    client->ports.erase(port);
    return 0;
}

int snd_seq_get_port_subscription(snd_seq_t* /*client*/, snd_seq_port_subscribe_t* link) {
    const std::lock_guard lock(sMutex);
    return sLinks.contains(EndsOf(link)) ? 0 : -ENOENT;
}
int snd_seq_subscribe_port(snd_seq_t* /*client*/, snd_seq_port_subscribe_t* link) {
    const std::lock_guard lock(sMutex);
    return sLinks.insert(EndsOf(link)).second ? 0 : -EBUSY;
}
int snd_seq_unsubscribe_port(snd_seq_t* /*client*/, snd_seq_port_subscribe_t* link) {
    const std::lock_guard lock(sMutex);
    return sLinks.erase(EndsOf(link)) == 1 ? 0 : -ENOENT;
}

int snd_seq_poll_descriptors(snd_seq_t* client, pollfd* waiting, unsigned int /*space*/,
                             short events) {
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
    PassOn({client->number, event->source.port}, std::move(sent));
    return 0;
}
