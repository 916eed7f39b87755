#include "Surfaces/MidiObject.h"

#include "Platform/CoreMIDI/Live/SoundCards.h"
#include "tests/fuzz/FuzzedStudio.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

// The lines are what the kernel tells; what each is, its first character says: a card or a program
// with its name, a port of the last of them, or a file of sysfs about its unit. What is plugged in
// has names that can be read, devices names of their own, and all are known again after they were
// gone, also by a program that starts then.

using namespace FuzzedStudio;
using namespace KestrinMIDI;

namespace {

constexpr std::size_t kMostClients = 6;
const std::map<char, const char*> kFiles = {{'v', "idVendor"},     {'i', "idProduct"},
                                            {'m', "manufacturer"}, {'n', "product"},
                                            {'s', "serial"},       {'d', "devpath"}};

std::filesystem::path DeviceOf(std::size_t card) {
    return std::filesystem::absolute("pci/usb1") / ("1-" + std::to_string(card));
}

SequencerSnapshot SnapshotOf(const std::string& told) {
    SequencerSnapshot snapshot;
    snapshot.state = SequencerState::Ready;
    auto& clients = snapshot.clients;
    std::istringstream lines(told);
    for (std::string line; std::getline(lines, line) && clients.size() < kMostClients;) {
        const char kind = line.empty() ? ' ' : line[0];
        const std::string text = line.substr(std::min<std::size_t>(line.size(), 1));
        const int number = static_cast<int>(clients.size());
        if (kind == 'c')
            snapshot.cards.push_back({number, text, "snd-usb-audio", "1-1:1.0", {}, text});
        if (kind == 'c' || kind == 'p')
            clients.push_back({16 + number, text, kind == 'c', kind == 'c' ? number : -1, {}});
        else if (clients.empty())
            continue;
        else if (kind >= '0' && kind <= '3')
            clients.back().ports.push_back({static_cast<int>(clients.back().ports.size()), text,
                                            (kind & 1) != 0, (kind & 2) != 0, true});
        else if (const auto file = kFiles.find(kind); file != kFiles.end()) {
            std::filesystem::create_directories(DeviceOf(snapshot.cards.size()));
            std::ofstream(DeviceOf(snapshot.cards.size()) / file->second) << text;
        }
    }
    std::size_t count = 0;
    for (SoundCard& card : snapshot.cards) {
        if (const auto device = DeviceOf(++count); std::filesystem::exists(device))
            card.usb = UsbUnitAbove(device / "1-1:1.0");
    }
    return snapshot;
}

/// A unique ID and a name for each.
std::vector<std::string> Seen(ItemCount count, MIDIObjectRef get(ItemCount)) {
    std::vector<std::string> seen;
    for (ItemCount i = 0; i < count; ++i) {
        const std::string name = MidiObject::String(get(i), kMIDIPropertyName).value_or("");
        Require(IsPlainText(name), "a name can be read");
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
    const SequencerSnapshot snapshot = SnapshotOf({bytes, bytes + count});
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
