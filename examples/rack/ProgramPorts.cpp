#include "examples/rack/Cables.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <stdexcept>

namespace {

struct CloseSequencer {
    void operator()(snd_seq_t* sequencer) const { snd_seq_close(sequencer); }
};
struct FreeCoder {
    void operator()(snd_midi_event_t* coder) const { snd_midi_event_free(coder); }
};
using CoderHolder = std::unique_ptr<snd_midi_event_t, FreeCoder>;

constexpr std::size_t kLongestPiece = 4096;
constexpr std::size_t kPool = 2000; // events that wait to be read: the most that it allows

int Checked(int result, const char* what) {
    if (result < 0)
        throw std::runtime_error(std::string(what) + ": " + snd_strerror(result));
    return result;
}

CoderHolder MakeCoder() {
    snd_midi_event_t* coder = nullptr;
    Checked(snd_midi_event_new(kLongestPiece, &coder), "No room for MIDI events");
    snd_midi_event_no_status(coder, 1); // every event with its status byte
    return CoderHolder(coder);
}

class ProgramPorts final : public Cables {
public:
    ProgramPorts(const std::string& client, const std::vector<std::string>& names);

    std::vector<pollfd> Descriptors() const override;
    bool Receive(const Receiver& receiver) override;
    void Send(std::size_t unit, const MidiBytes& message) override;

private:
    std::unique_ptr<snd_seq_t, CloseSequencer> fSequencer;
    std::vector<int> fPorts;
    CoderHolder fDecoder = MakeCoder();
    CoderHolder fEncoder = MakeCoder();
};

ProgramPorts::ProgramPorts(const std::string& client, const std::vector<std::string>& names) {
    snd_seq_t* sequencer = nullptr;
    Checked(snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK),
            "The sequencer cannot be opened");
    fSequencer.reset(sequencer);
    snd_seq_set_client_name(sequencer, client.c_str());
    snd_seq_set_client_pool_input(sequencer, kPool);
    for (const std::string& name : names)
        fPorts.push_back(Checked(
            snd_seq_create_simple_port(sequencer, name.c_str(),
                                       SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ |
                                           SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE |
                                           SND_SEQ_PORT_CAP_DUPLEX,
                                       SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_SOFTWARE),
            "A port cannot be made"));
}

std::vector<pollfd> ProgramPorts::Descriptors() const {
    std::vector<pollfd> descriptors(
        static_cast<std::size_t>(snd_seq_poll_descriptors_count(fSequencer.get(), POLLIN)));
    snd_seq_poll_descriptors(fSequencer.get(), descriptors.data(),
                             static_cast<unsigned int>(descriptors.size()), POLLIN);
    return descriptors;
}

bool ProgramPorts::Receive(const Receiver& receiver) {
    for (;;) {
        snd_seq_event_t* event = nullptr;
        const int result = snd_seq_event_input(fSequencer.get(), &event);
        if (result == -EAGAIN)
            return true;
        if (result == -ENOSPC)
            continue; // the queue overflowed; what came after that is in it
        if (result < 0)
            return false;
        const auto port = std::find(fPorts.begin(), fPorts.end(), event->dest.port);
        std::uint8_t bytes[kLongestPiece];
        const long count = snd_midi_event_decode(fDecoder.get(), bytes, sizeof bytes, event);
        if (port != fPorts.end() && count > 0)
            receiver(static_cast<std::size_t>(port - fPorts.begin()),
                     {bytes, static_cast<std::size_t>(count)});
    }
}

void ProgramPorts::Send(std::size_t unit, const MidiBytes& message) {
    snd_seq_event_t event;
    snd_seq_ev_clear(&event);
    const auto length = static_cast<long>(message.size());
    if (snd_midi_event_encode(fEncoder.get(), message.data(), length, &event) < length)
        return;
    snd_seq_ev_set_source(&event, static_cast<unsigned char>(fPorts.at(unit)));
    snd_seq_ev_set_subs(&event);
    snd_seq_ev_set_direct(&event);
    snd_seq_event_output_direct(fSequencer.get(), &event);
}

} // namespace

std::unique_ptr<Cables> MakeProgramPorts(const std::string& client,
                                         const std::vector<std::string>& names) {
    return std::make_unique<ProgramPorts>(client, names);
}
