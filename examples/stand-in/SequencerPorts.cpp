#include "examples/stand-in/SequencerPorts.h"

#include <alsa/asoundlib.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

struct CloseSequencer {
    void operator()(snd_seq_t* sequencer) const { snd_seq_close(sequencer); }
};
using Sequencer = std::unique_ptr<snd_seq_t, CloseSequencer>;

Sequencer Open() {
    snd_seq_t* sequencer = nullptr;
    if (const int result = snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_DUPLEX, 0); result < 0)
        throw std::runtime_error(std::string("No sequencer: ") + snd_strerror(result));
    return Sequencer(sequencer);
}

int ClientNamed(snd_seq_t* sequencer, const std::string& name) {
    snd_seq_client_info_t* info = nullptr;
    snd_seq_client_info_alloca(&info);
    snd_seq_client_info_set_client(info, -1);
    while (snd_seq_query_next_client(sequencer, info) >= 0) {
        if (snd_seq_client_info_get_name(info) == name)
            return snd_seq_client_info_get_client(info);
    }
    return -1;
}

std::vector<SequencerPort> PortsOf(snd_seq_t* sequencer, int client) {
    std::vector<SequencerPort> ports;
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_alloca(&info);
    snd_seq_port_info_set_client(info, client);
    snd_seq_port_info_set_port(info, -1);
    while (client >= 0 && snd_seq_query_next_port(sequencer, info) >= 0) {
        if (snd_seq_port_info_get_capability(info) & SND_SEQ_PORT_CAP_SUBS_READ)
            ports.push_back({client, snd_seq_port_info_get_port(info)});
    }
    return ports;
}

void ForBothDirections(const SequencerPort& one, const SequencerPort& other, const char* what,
                       int (*change)(snd_seq_t*, snd_seq_port_subscribe_t*)) {
    const Sequencer sequencer = Open();
    const auto address = [](const SequencerPort& port) {
        return snd_seq_addr_t{static_cast<unsigned char>(port.client),
                              static_cast<unsigned char>(port.port)};
    };
    snd_seq_addr_t from = address(one);
    snd_seq_addr_t to = address(other);
    for (int direction = 0; direction < 2; ++direction, std::swap(from, to)) {
        snd_seq_port_subscribe_t* subscription = nullptr;
        snd_seq_port_subscribe_alloca(&subscription);
        snd_seq_port_subscribe_set_sender(subscription, &from);
        snd_seq_port_subscribe_set_dest(subscription, &to);
        if (const int result = change(sequencer.get(), subscription); result < 0)
            throw std::runtime_error(std::string(what) + ": " + snd_strerror(result));
    }
}

} // namespace

std::vector<SequencerPort> AwaitPorts(const std::string& client, std::size_t count) {
    using namespace std::chrono_literals;
    const Sequencer sequencer = Open();
    for (int attempt = 0; attempt < 600; ++attempt) {
        std::vector<SequencerPort> ports =
            PortsOf(sequencer.get(), ClientNamed(sequencer.get(), client));
        if (ports.size() >= count)
            return ports;
        std::this_thread::sleep_for(100ms);
    }
    throw std::runtime_error("There are no " + std::to_string(count) + " ports of " + client);
}

void Connect(const SequencerPort& one, const SequencerPort& other) {
    ForBothDirections(one, other, "Not connected", snd_seq_subscribe_port);
}

void Disconnect(const SequencerPort& one, const SequencerPort& other) {
    ForBothDirections(one, other, "Not disconnected", snd_seq_unsubscribe_port);
}
