#include "Platform/CoreMIDI/Live/LiveStudio.h"

#include "Platform/CoreMIDI/Live/EndpointNames.h"
#include "Platform/CoreMIDI/Live/Whereabouts.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <algorithm>
#include <utility>

namespace KestrinMIDI {

namespace {

/// A port together with the client that has it: the place of a port counts over all clients of its
/// card, in the order of their numbers.
struct CardPort {
    const SequencerClient* client;
    const SequencerPort* port;
};

bool IsEndpointPort(const SequencerPort& port) {
    return port.isSource || port.isDestination;
}

std::vector<CardPort> PortsOf(const SequencerSnapshot& snapshot, int card) {
    std::vector<CardPort> ports;
    for (const SequencerClient& client : snapshot.clients) {
        if (!client.isKernel || client.card != card)
            continue;
        for (const SequencerPort& port : client.ports) {
            if (IsEndpointPort(port))
                ports.push_back({&client, &port});
        }
    }
    std::sort(ports.begin(), ports.end(), [](const CardPort& one, const CardPort& other) {
        return std::pair(one.client->number, one.port->number) <
               std::pair(other.client->number, other.port->number);
    });
    return ports;
}

/// The port's name begins with the card's short name, which the client bears too, except with a few
/// drivers that name their clients otherwise.
std::string JackNameOf(const SoundCard& card, const CardPort& port) {
    const bool bearsClientName = port.port->name.starts_with(port.client->name);
    return JackName(bearsClientName ? port.client->name : card.name, port.port->name);
}

std::vector<LivePort> LivePortsOf(const SequencerSnapshot& snapshot, const SoundCard& card) {
    std::vector<LivePort> live;
    for (const CardPort& port : PortsOf(snapshot, card.number)) {
        const int place = static_cast<int>(live.size()) + 1;
        live.push_back({place, PortName(place, JackNameOf(card, port)), port.port->isSource,
                        port.port->isDestination, WhereaboutsOf(*port.client, *port.port)});
    }
    return live;
}

HardwareRecord RecordOf(const SoundCard& card) {
    const std::string cardName = CleanName(card.name);
    if (!card.usb)
        return {"card " + card.driver + " " + cardName, "", card.path, "", cardName};
    const UsbUnit& usb = *card.usb;
    const std::string product = CleanName(usb.product);
    return {"usb " + usb.vendorID + ":" + usb.productID, CleanName(usb.serial), usb.path,
            CleanName(usb.manufacturer), product.empty() ? cardName : product};
}

void AddProgramEndpoints(LiveStudio& studio, const SequencerClient& client) {
    const std::string clientName = CleanName(client.name);
    for (const SequencerPort& port : client.ports) {
        const std::string portName = CleanName(port.name);
        const HardwareRecord record{"program " + clientName, portName, "", "",
                                    ProgramEndpointName(clientName, portName)};
        const std::vector<StoredProperty> whereabouts = WhereaboutsOf(client, port);
        if (port.isSource)
            studio.endpoints.push_back({record, kMIDIObjectType_Source, whereabouts});
        if (port.isDestination)
            studio.endpoints.push_back({record, kMIDIObjectType_Destination, whereabouts});
    }
}

bool IsListed(const SequencerClient& client) {
    return std::ranges::none_of(client.ports, [](const SequencerPort& port) {
        return !IsEndpointPort(port) && port.name == KESTRIN_MIDI_UNLISTED_PORT;
    });
}

} // namespace

LiveStudio StudioOf(const SequencerSnapshot& snapshot) {
    LiveStudio studio;
    for (const SoundCard& card : snapshot.cards) {
        std::vector<LivePort> ports = LivePortsOf(snapshot, card);
        if (!ports.empty())
            studio.devices.push_back(
                {RecordOf(card), card.driver, std::move(ports), WhereaboutsOf(card)});
    }
    for (const SequencerClient& client : snapshot.clients) {
        if (!client.isKernel && client.number != snapshot.ownClient && IsListed(client))
            AddProgramEndpoints(studio, client);
    }
    return studio;
}

} // namespace KestrinMIDI
