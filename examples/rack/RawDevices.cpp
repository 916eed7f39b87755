#include "examples/rack/Cables.h"

#include <alsa/asoundlib.h>

#include <stdexcept>

namespace {

struct CloseDevice {
    void operator()(snd_rawmidi_t* device) const { snd_rawmidi_close(device); }
};
using DeviceHolder = std::unique_ptr<snd_rawmidi_t, CloseDevice>;

struct RawDevice {
    DeviceHolder input;
    DeviceHolder output;
};

void Check(int result, const std::string& name) {
    if (result < 0)
        throw std::runtime_error("The MIDI device " + name +
                                 " cannot be opened: " + snd_strerror(result));
}

/// Two descriptors, as only one of the two may block: what a unit says is never dropped.
RawDevice Open(const std::string& name) {
    snd_rawmidi_t* opened = nullptr;
    Check(snd_rawmidi_open(&opened, nullptr, name.c_str(), SND_RAWMIDI_NONBLOCK), name);
    RawDevice device{DeviceHolder(opened), nullptr};
    Check(snd_rawmidi_open(nullptr, &opened, name.c_str(), SND_RAWMIDI_NONBLOCK), name);
    device.output.reset(opened);
    snd_rawmidi_nonblock(opened, 0);
    // The kernel drops what comes before the first reading: the answer to a unit's first words.
    std::uint8_t none = 0;
    snd_rawmidi_read(device.input.get(), &none, 0);
    return device;
}

class RawDevices final : public Cables {
public:
    explicit RawDevices(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            fDevices.push_back(Open(name));
    }

    std::vector<pollfd> Descriptors() const override;
    bool Receive(const Receiver& receiver) override;
    void Send(std::size_t unit, const MidiBytes& message) override {
        snd_rawmidi_write(fDevices.at(unit).output.get(), message.data(), message.size());
    }

private:
    std::vector<RawDevice> fDevices;
};

std::vector<pollfd> RawDevices::Descriptors() const {
    std::vector<pollfd> descriptors;
    for (const RawDevice& device : fDevices) {
        pollfd descriptor{};
        snd_rawmidi_poll_descriptors(device.input.get(), &descriptor, 1);
        descriptors.push_back(descriptor);
    }
    return descriptors;
}

bool RawDevices::Receive(const Receiver& receiver) {
    for (std::size_t unit = 0; unit < fDevices.size(); ++unit) {
        std::uint8_t bytes[256];
        ssize_t count;
        while ((count = snd_rawmidi_read(fDevices[unit].input.get(), bytes, sizeof bytes)) > 0)
            receiver(unit, {bytes, static_cast<std::size_t>(count)});
        if (count == -ENODEV)
            return false;
    }
    return true;
}

} // namespace

std::unique_ptr<Cables> OpenRawDevices(const std::vector<std::string>& devices) {
    return std::make_unique<RawDevices>(devices);
}
