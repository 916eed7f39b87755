// soak-ports EVENTS REPLUGS SAMPLES: what surface-ports does for so many events, while its four
// units are pulled out and plugged in elsewhere so many times, over a sequencer in memory. The
// database is KESTRIN_MIDI_DATABASE. Counts to SAMPLES meanwhile: prints the number, and goes on
// when a line comes on the standard input, so that who started it can look at its size. Fails where
// an event was lost.

#include "Surfaces/MidiObject.h"
#include "Surfaces/SurfaceGroups.h"

#include "Platform/CoreMIDI/Interface/Service.h"
#include "bench/tools/surface-ports/MemorySequencer.h"
#include "tools/surface-ports/AlsaSequencer.h"
#include "tools/surface-ports/PortKeeper.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <array>
#include <iostream>
#include <string>

using namespace KestrinMIDI;

namespace {

constexpr int kUnits = 4;
constexpr int kUnplugged = -1;
constexpr std::uint64_t kBurst = 64; // fewer than the kernel's sequencer holds

/// For each unit the number of its sound card.
std::array<int, kUnits> sCards{0, 1, 2, 3};
bool sHasNews = true;

int ClientOf(int unit) {
    return 16 + 4 * sCards[static_cast<std::size_t>(unit)];
}

class UnitsOnCards final : public SequencerReader {
public:
    SequencerSnapshot Read() override {
        sHasNews = false;
        SequencerSnapshot snapshot;
        snapshot.state = SequencerState::Ready;
        for (int unit = 0; unit < kUnits; ++unit) {
            if (sCards[static_cast<std::size_t>(unit)] != kUnplugged)
                Add(unit, snapshot);
        }
        return snapshot;
    }
    bool HasChanged() override { return sHasNews; }
    int Descriptor() const override { return -1; }

private:
    static void Add(int unit, SequencerSnapshot& snapshot) {
        const int card = sCards[static_cast<std::size_t>(unit)];
        const std::string name = "MCU Pro USB";
        snapshot.clients.push_back(
            {ClientOf(unit), name, true, card, {{0, name + " MIDI 1", true, true, true}}});
        const std::string place = "0000:00:14.0-" + std::to_string(card + 1);
        snapshot.cards.push_back({card, name, "snd-usb-audio", "",
                                  UsbUnit{"0a73", "0006", "LOUD Technologies, Inc.", name,
                                          "SN" + std::to_string(unit), place},
                                  "USB_" + std::to_string(card)});
    }
};

/// The program, less its loop.
class Keeping {
public:
    Keeping() { MIDIClientCreate(nullptr, nullptr, nullptr, &fClient); }

    void Look() {
        KestrinMIDIClientDeliver(fClient);
        if (const auto plan = SurfacePorts::ReadPlan())
            fKeeper.Keep(*plan);
    }

private:
    MIDIClientRef fClient = 0;
    std::unique_ptr<SurfacePorts::Sequencer> fSequencer = SurfacePorts::OpenSequencer();
    SurfacePorts::PortKeeper fKeeper{*fSequencer};
};

void PlaceUnits() {
    for (int unit = 0; unit < kUnits; ++unit) {
        const MIDIDeviceRef device = MIDIGetDevice(static_cast<ItemCount>(unit));
        MIDIObjectSetIntegerProperty(device, MidiObject::ToText(kGroupIDKey).Get(), 0);
        MIDIObjectSetIntegerProperty(device, MidiObject::ToText(kGroupPositionKey).Get(), unit);
    }
}

/// Cards 0 to 3 are where units are at first, 4 to 7 where they go next.
void Replug(int unit, Keeping& keeping) {
    int& card = sCards[static_cast<std::size_t>(unit)];
    const int next = (card + kUnits) % (2 * kUnits);
    MemorySequencer::PullOut(ClientOf(unit));
    for (const int now : {kUnplugged, next}) {
        card = now;
        sHasNews = true;
        keeping.Look();
    }
}

/// Half of them from the units, half to them: faders' moves.
void Pass(std::uint64_t events) {
    const int ports = MemorySequencer::ClientNamed("Surfaces 0");
    MemorySequencer::Event move;
    move.head.type = SND_SEQ_EVENT_PITCHBEND;
    for (std::uint64_t sent = 0; sent < events; ++sent) {
        const int unit = static_cast<int>(sent / 2 % kUnits);
        move.head.data.control.value = static_cast<int>(sent & 0x3FFF);
        if (sent % 2 == 0)
            MemorySequencer::Emit({ClientOf(unit), 0}, move);
        else
            MemorySequencer::Send({ports, unit}, move);
        if (sent % kBurst == kBurst - 1)
            MemorySequencer::Settle();
    }
    MemorySequencer::Settle();
}

void Soak(std::uint64_t events, std::uint64_t replugs, std::uint64_t samples) {
    Keeping keeping;
    for (std::uint64_t replug = 0; replug < replugs; ++replug) {
        Replug(static_cast<int>(replug % kUnits), keeping);
        Pass(events / replugs);
        if ((replug + 1) % (replugs / samples) == 0) {
            std::cout << (replug + 1) / (replugs / samples) << std::endl;
            std::cin.ignore();
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4)
        return 2;
    const std::uint64_t replugs = std::stoull(arguments[2]);
    const std::uint64_t events = std::stoull(arguments[1]) / replugs * replugs;
    Service::Instance().UseReader(std::make_unique<UnitsOnCards>());
    MIDIGetNumberOfDevices();
    MIDIGetNumberOfSources();
    PlaceUnits();
    std::uint64_t heard = 0;
    MemorySequencer::Hear([&heard](const auto&, const auto&) { ++heard; });
    Soak(events, replugs, std::stoull(arguments[3]));
    std::cerr << heard << " of " << events << " events heard\n";
    return heard == events ? 0 : 1;
}
