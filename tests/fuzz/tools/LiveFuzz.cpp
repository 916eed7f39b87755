#include "Surfaces/MidiObject.h"

#include "Platform/CoreMIDI/Live/EndpointNames.h"
#include "Platform/CoreMIDI/Live/SoundCards.h"
#include "tests/fuzz/FuzzedStudio.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <fstream>
#include <set>

// The bytes are what the kernel tells: files of sysfs, names of cards, clients and ports. What is
// plugged in has names that can be read, devices names of their own, and all are known again after
// they were gone, also by a program that starts then.

using namespace FuzzedStudio;
using namespace KestrinMIDI;

namespace {

constexpr std::size_t kLongestName = 40;

UsbUnit UnitIn(FuzzedDataProvider& bytes) {
    const std::filesystem::path device = "pci/usb1/1-1";
    std::filesystem::create_directories(device);
    for (const char* const name :
         {"idVendor", "idProduct", "manufacturer", "product", "serial", "devpath"})
        std::ofstream(device / name, std::ios::binary)
            << bytes.ConsumeRandomLengthString(kLongestName);
    return *UsbUnitAbove(std::filesystem::absolute(device / "1-1:1.0"));
}

SequencerSnapshot SnapshotOf(FuzzedDataProvider bytes) {
    SequencerSnapshot snapshot;
    snapshot.state = SequencerState::Ready;
    for (int number = 0; number < 6 && bytes.remaining_bytes() > 0; ++number) {
        const auto name = [&bytes] { return bytes.ConsumeRandomLengthString(kLongestName); };
        const bool isCard = bytes.ConsumeBool();
        SequencerClient client{16 + number, name(), isCard, isCard ? number : -1, {}};
        const int ports = bytes.ConsumeIntegralInRange(0, 4);
        for (int port = 0; port < ports; ++port)
            client.ports.push_back({port, name(), bytes.ConsumeBool(), bytes.ConsumeBool(), true});
        if (isCard)
            snapshot.cards.push_back({number, client.name, name(), name(), UnitIn(bytes), name()});
        if (isCard && bytes.ConsumeBool())
            snapshot.cards.back().usb.reset();
        snapshot.clients.push_back(client);
    }
    return snapshot;
}

/// A unique ID and a name for each.
std::vector<std::string> Seen(ItemCount count, MIDIObjectRef get(ItemCount)) {
    std::vector<std::string> seen;
    for (ItemCount i = 0; i < count; ++i) {
        const std::string name = MidiObject::String(get(i), kMIDIPropertyName).value_or("");
        Require(CleanName(name) == name, "a name can be read");
        seen.push_back(std::to_string(MidiObject::ID(get(i))) + " " + name);
    }
    return seen;
}

std::vector<std::vector<std::string>> All() {
    return {Seen(MIDIGetNumberOfDevices(), MIDIGetDevice),
            Seen(MIDIGetNumberOfSources(), MIDIGetSource),
            Seen(MIDIGetNumberOfDestinations(), MIDIGetDestination)};
}

void CheckDeviceNames() {
    std::set<std::string> names;
    for (ItemCount i = 0; i < MIDIGetNumberOfDevices(); ++i) {
        const auto name = MidiObject::String(MIDIGetDevice(i), kMIDIPropertyName);
        Require(!name || names.insert(*name).second, "a device has a name of its own");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    Begin("");
    const SequencerSnapshot snapshot = SnapshotOf(FuzzedDataProvider(bytes, count));
    PlugIn(snapshot);
    const auto plugged = All();
    CheckDeviceNames();
    PlugIn({});
    Require(All()[1].empty() && All()[0] == plugged[0], "what is unplugged stays known");
    PlugIn(snapshot);
    Require(All() == plugged, "what was gone is known again");
    MIDIRestart();
    Require(All() == plugged, "a program that starts knows it");
    Require(MidiSetup({"doctor"}).exitCode < 2, "the database is whole");
    return 0;
}
