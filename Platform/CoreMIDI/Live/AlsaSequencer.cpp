#include "Platform/CoreMIDI/Live/SequencerSnapshot.h"
#include "Platform/CoreMIDI/Live/SoundCards.h"

#include <alsa/asoundlib.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>

namespace KestrinMIDI {

namespace {

constexpr const char* kDeviceFile = "/dev/snd/seq";
constexpr int kMostReadings = 4;

struct SequencerCloser {
    void operator()(snd_seq_t* sequencer) const { snd_seq_close(sequencer); }
};
using SequencerHolder = std::unique_ptr<snd_seq_t, SequencerCloser>;

/// Opens the kernel's sequencer with a configuration of two words: the user's own (and the
/// library's large one, whose reading takes milliseconds) says nothing about it.
snd_seq_t* OpenKernelSequencer() {
    snd_input_t* text = nullptr;
    snd_config_t* configuration = nullptr;
    snd_seq_t* sequencer = nullptr;
    constexpr char kConfiguration[] = "seq.hw { type hw }";
    if (snd_input_buffer_open(&text, kConfiguration, sizeof kConfiguration - 1) < 0)
        return nullptr;
    if (snd_config_top(&configuration) == 0) {
        if (snd_config_load(configuration, text) == 0)
            snd_seq_open_lconf(&sequencer, "hw", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK,
                               configuration);
        snd_config_delete(configuration);
    }
    snd_input_close(text);
    return sequencer;
}

/// Whether the sequencer can be opened. Asked of the system itself, since the library prints a
/// complaint of its own where it can't.
SequencerState ProbeSequencer() {
    const int descriptor = open(kDeviceFile, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return errno == EACCES || errno == EPERM ? SequencerState::NotPermitted
                                                 : SequencerState::Missing;
    close(descriptor);
    return SequencerState::Ready;
}

SequencerPort PortOf(const snd_seq_port_info_t* info) {
    const unsigned int can = snd_seq_port_info_get_capability(info);
    const auto has = [can](unsigned int all) { return (can & all) == all; };
    const bool isHidden = has(SND_SEQ_PORT_CAP_NO_EXPORT);
    SequencerPort port;
    port.number = snd_seq_port_info_get_port(info);
    port.name = snd_seq_port_info_get_name(info);
    constexpr unsigned int kRawMIDI = SND_SEQ_PORT_TYPE_HARDWARE | SND_SEQ_PORT_TYPE_PORT;
    port.isRawMIDI = (snd_seq_port_info_get_type(info) & kRawMIDI) == kRawMIDI;
    port.isSource = !isHidden && has(SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ);
    port.isDestination = !isHidden && has(SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE);
    return port;
}

SequencerClient ClientOf(snd_seq_t* sequencer, const snd_seq_client_info_t* info) {
    SequencerClient client;
    client.number = snd_seq_client_info_get_client(info);
    client.name = snd_seq_client_info_get_name(const_cast<snd_seq_client_info_t*>(info));
    client.isKernel = snd_seq_client_info_get_type(info) == SND_SEQ_KERNEL_CLIENT;
    client.card = client.isKernel ? snd_seq_client_info_get_card(info) : -1;
    snd_seq_port_info_t* port = nullptr;
    snd_seq_port_info_alloca(&port);
    snd_seq_port_info_set_client(port, client.number);
    snd_seq_port_info_set_port(port, -1);
    // The end of the ports and a client that is gone meanwhile look alike here, and need no more.
    while (snd_seq_query_next_port(sequencer, port) >= 0)
        client.ports.push_back(PortOf(port));
    return client;
}

class AlsaSequencer final : public SequencerReader {
public:
    SequencerSnapshot Read() override;
    bool HasChanged() override;
    int Descriptor() const override;

private:
    SequencerState Open();
    void ListenForAnnouncements();
    bool TakeAnnouncements();
    void ReadClients(SequencerSnapshot& snapshot);
    void ReadCards(SequencerSnapshot& snapshot);
    static void LeaveOutMovedCards(SequencerSnapshot& snapshot, const CardPlaces& before);

    SequencerHolder fSequencer;
    bool fChangedWhileRead = false;
};

SequencerState AlsaSequencer::Open() {
    if (fSequencer)
        return SequencerState::Ready;
    if (const SequencerState state = ProbeSequencer(); state != SequencerState::Ready)
        return state;
    fSequencer.reset(OpenKernelSequencer());
    if (!fSequencer)
        return SequencerState::Missing;
    snd_seq_set_client_name(fSequencer.get(), "Kestrin MIDI");
    ListenForAnnouncements();
    return SequencerState::Ready;
}

void AlsaSequencer::ListenForAnnouncements() {
    // Without the capability of being subscribed to, so that no program takes it for a destination.
    const int port = snd_seq_create_simple_port(fSequencer.get(), "Announcements",
                                                SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
                                                SND_SEQ_PORT_TYPE_APPLICATION);
    if (port >= 0)
        snd_seq_connect_from(fSequencer.get(), port, SND_SEQ_CLIENT_SYSTEM,
                             SND_SEQ_PORT_SYSTEM_ANNOUNCE);
}

/// Empties the queue of announcements; whether there were any, or too many for it to hold.
bool AlsaSequencer::TakeAnnouncements() {
    bool any = false;
    for (;;) {
        snd_seq_event_t* event = nullptr;
        const int result = snd_seq_event_input(fSequencer.get(), &event);
        if (result == -EAGAIN)
            return any;
        any = true;
        if (result < 0 && result != -ENOSPC)
            return any;
    }
}

bool AlsaSequencer::HasChanged() {
    if (fSequencer)
        return TakeAnnouncements() || fChangedWhileRead;
    // The sequencer came into being: its first device was plugged in.
    return ProbeSequencer() == SequencerState::Ready;
}

int AlsaSequencer::Descriptor() const {
    pollfd waiting{-1, 0, 0};
    if (fSequencer)
        snd_seq_poll_descriptors(fSequencer.get(), &waiting, 1, POLLIN);
    return waiting.fd;
}

void AlsaSequencer::ReadClients(SequencerSnapshot& snapshot) {
    snapshot.ownClient = snd_seq_client_id(fSequencer.get());
    snd_seq_client_info_t* info = nullptr;
    snd_seq_client_info_alloca(&info);
    snd_seq_client_info_set_client(info, -1);
    while (snd_seq_query_next_client(fSequencer.get(), info) >= 0)
        snapshot.clients.push_back(ClientOf(fSequencer.get(), info));
}

void AlsaSequencer::ReadCards(SequencerSnapshot& snapshot) {
    std::set<int> cards;
    for (const SequencerClient& client : snapshot.clients) {
        if (client.card >= 0)
            cards.insert(client.card);
    }
    for (const int number : cards) {
        if (std::optional<SoundCard> card = ReadSoundCard(number))
            snapshot.cards.push_back(*std::move(card));
    }
}

/// Where units move without end, one that took another number meanwhile was read twice, and ports
/// may be those of the card that had the number before.
void AlsaSequencer::LeaveOutMovedCards(SequencerSnapshot& snapshot, const CardPlaces& before) {
    const CardPlaces now = PlacesOfCards();
    const auto in = [](const CardPlaces& places, const SoundCard& card) {
        const auto found = places.find(EntryName(card.number));
        return found != places.end() ? found->second : std::filesystem::path();
    };
    std::erase_if(snapshot.cards,
                  [&](const SoundCard& card) { return in(before, card) != in(now, card); });
}

SequencerSnapshot AlsaSequencer::Read() {
    // What was read before and after a change does not fit together: a card's number may be another
    // card's by then. A change that never ends makes the next HasChanged true instead.
    SequencerSnapshot snapshot;
    fChangedWhileRead = true;
    for (int reading = 0; fChangedWhileRead && reading < kMostReadings; ++reading) {
        snapshot = {};
        snapshot.state = Open();
        if (snapshot.state != SequencerState::Ready)
            return snapshot;
        TakeAnnouncements();
        const CardPlaces places = PlacesOfCards();
        ReadClients(snapshot);
        ReadCards(snapshot);
        LeaveOutMovedCards(snapshot, places);
        fChangedWhileRead = TakeAnnouncements();
    }
    return snapshot;
}

} // namespace

std::unique_ptr<SequencerReader> MakeSequencerReader() {
    return std::make_unique<AlsaSequencer>();
}

} // namespace KestrinMIDI
