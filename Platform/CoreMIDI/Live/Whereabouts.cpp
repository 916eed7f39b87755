#include "Platform/CoreMIDI/Live/Whereabouts.h"

#include "Platform/CoreMIDI/Live/EndpointNames.h"

#include <charconv>

namespace KestrinMIDI {

namespace {

// As the kernel numbers the sequencer ports that it makes of a card's raw MIDI devices.
constexpr int kPortsOfRawDevice = 32;

StoredProperty Number(PropertyKey key, int number) {
    return {key, PropertyValue::OfInteger(number)};
}

void AddText(std::vector<StoredProperty>& properties, PropertyKey key, const std::string& text) {
    if (!text.empty())
        properties.push_back({key, PropertyValue::OfString(text)});
}

std::uint32_t FromHex(const std::string& digits) {
    std::uint32_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return number;
}

std::string RawName(int card, int port) {
    return "hw:" + std::to_string(card) + "," + std::to_string(port / kPortsOfRawDevice) + "," +
           std::to_string(port % kPortsOfRawDevice);
}

} // namespace

std::vector<StoredProperty> WhereaboutsOf(const SoundCard& card) {
    std::vector<StoredProperty> properties{Number(KeyTable::kCard, card.number)};
    AddText(properties, KeyTable::kCardID, card.id);
    if (!card.usb)
        return properties;
    AddText(properties, KeyTable::kUSBPath, card.usb->path);
    AddText(properties, KeyTable::kUSBSerial, CleanName(card.usb->serial));
    const std::uint32_t both = FromHex(card.usb->vendorID) << 16 | FromHex(card.usb->productID);
    properties.push_back(Number(KeyTable::kUSBVendorProduct, static_cast<SInt32>(both)));
    return properties;
}

std::vector<StoredProperty> WhereaboutsOf(const SequencerClient& client,
                                          const SequencerPort& port) {
    std::vector<StoredProperty> properties{Number(KeyTable::kSequencerClient, client.number),
                                           Number(KeyTable::kSequencerPort, port.number)};
    if (port.isRawMIDI && client.card >= 0)
        AddText(properties, KeyTable::kRawMIDI, RawName(client.card, port.number));
    return properties;
}

} // namespace KestrinMIDI
