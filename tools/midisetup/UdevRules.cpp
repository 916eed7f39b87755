#include "tools/midisetup/UdevRules.h"

#include "Surfaces/MidiObject.h"

#include "tools/midisetup/Output.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <string_view>

namespace MidiSetup {

namespace {

constexpr std::size_t kLongestCardID = 15;

bool IsLetterOrDigit(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z');
}

/// The text as a pattern that holds nothing with a meaning in a rule: runs of other characters than
/// these become "*".
std::string Pattern(const std::string& text) {
    std::string pattern;
    for (const char byte : text) {
        if (IsLetterOrDigit(byte) || std::string_view(" ._:-").find(byte) != std::string_view::npos)
            pattern += byte;
        else if (!pattern.ends_with('*'))
            pattern += '*';
    }
    return pattern;
}

std::string CardID(const std::string& name, std::set<std::string>& taken) {
    std::string id = name;
    std::erase_if(id, [](char byte) { return !IsLetterOrDigit(byte); });
    id = id.empty() ? "Surface" : id.substr(0, kLongestCardID);
    std::string distinct = id;
    for (int number = 2; !taken.insert(distinct).second; ++number) {
        const std::string suffix = std::to_string(number);
        distinct = id.substr(0, kLongestCardID - suffix.size()) + suffix;
    }
    return distinct;
}

bool IsAlike(const KnownCard& one, const KnownCard& other) {
    return one.vendorProduct == other.vendorProduct && one.serial == other.serial;
}

/// What is only this card's: its serial number, or else its place.
std::string Distinction(const KnownCard& card, const std::vector<KnownCard>& cards) {
    const auto alike = std::ranges::count_if(
        cards, [&card](const KnownCard& other) { return IsAlike(card, other); });
    if (!card.serial.empty() && alike == 1)
        return "ATTRS{serial}==\"" + Pattern(card.serial) + "\"";
    const std::size_t dash = card.path.rfind('-');
    return "DEVPATH==\"*/" + Pattern(card.path.substr(0, dash)) + "/usb*-" +
           Pattern(card.path.substr(dash + 1)) + ":*/sound/card*\"";
}

std::string RuleFor(const KnownCard& card, const std::vector<KnownCard>& cards,
                    std::set<std::string>& taken) {
    const auto both = static_cast<std::uint32_t>(card.vendorProduct);
    char ids[80];
    std::snprintf(ids, sizeof ids, R"(ATTRS{idVendor}=="%04x", ATTRS{idProduct}=="%04x")",
                  both >> 16, both & 0xFFFF);
    return "# " + Printable(card.name) +
           "\nACTION==\"add\", SUBSYSTEM==\"sound\", KERNEL==\"card*\", " + ids + ", " +
           Distinction(card, cards) + ", ATTR{id}=\"" + CardID(card.name, taken) + "\"\n";
}

} // namespace

std::vector<KnownCard> PluggedCards() {
    std::vector<KnownCard> cards;
    const ItemCount count = MIDIGetNumberOfDevices();
    for (ItemCount i = 0; i < count; ++i) {
        const MIDIDeviceRef device = MIDIGetDevice(i);
        const auto both = MidiObject::Integer(device, kKestrinMIDIPropertyUSBVendorProduct);
        const auto path = MidiObject::String(device, kKestrinMIDIPropertyUSBPath);
        if (both && path && path->find('-') != std::string::npos)
            cards.push_back({MidiObject::String(device, kMIDIPropertyName).value_or(""), *both,
                             MidiObject::String(device, kKestrinMIDIPropertyUSBSerial).value_or(""),
                             *path});
    }
    return cards;
}

std::string UdevRulesFor(const std::vector<KnownCard>& cards) {
    std::string rules = "# Stable IDs for the USB MIDI units that were plugged in when this was "
                        "written.\n# It belongs into /etc/udev/rules.d/70-surfaces.rules.\n";
    std::set<std::string> taken;
    for (const KnownCard& card : cards)
        rules += RuleFor(card, cards, taken);
    return rules;
}

} // namespace MidiSetup
