#include "tools/midisetup/Properties.h"

#include "tools/messages/Messages.h"
#include "tools/messages/ServiceMessages.h"
#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <charconv>

namespace MidiSetup {

namespace {

std::string MeaningOf(OSStatus status) {
    switch (status) {
    case kMIDIUnknownProperty:
        return Message("it has no such property of its own");
    case kMIDIWrongPropertyType:
        return Message("the property has another type");
    case kMIDIObjectNotFound:
        return Message("there is no such object any more");
    case kMIDIIDNotUnique:
        return Message("another object has that unique ID");
    case kMIDINotPermitted:
        return Message("the MIDI service does not permit it");
    default:
        return ServiceMessage(KestrinMIDICopyStatusText(status));
    }
}

OSStatus Store(MIDIObjectRef object, CFStringRef key, const PropertyValue& value) {
    if (const auto* number = std::get_if<SInt32>(&value))
        return MIDIObjectSetIntegerProperty(object, key, *number);
    if (const auto* text = std::get_if<std::string>(&value))
        return MIDIObjectSetStringProperty(object, key, RequireText(*text).Get());
    const auto& bytes = std::get<Bytes>(value);
    const CFHolder<CFDataRef> data(
        CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
    return MIDIObjectSetDataProperty(object, key, data.Get());
}

} // namespace

Text RequireText(std::string_view utf8) {
    Text text = MidiObject::ToText(utf8);
    if (!text)
        throw Failure(Message("\"%1\" is not valid UTF-8", Printable(utf8)));
    return text;
}

std::optional<PropertyValue> GetProperty(MIDIObjectRef object, const std::string& key) {
    const Text text = RequireText(key);
    if (auto number = MidiObject::Integer(object, text.Get()))
        return *number;
    if (auto string = MidiObject::String(object, text.Get()))
        return *std::move(string);
    if (auto bytes = MidiObject::Data(object, text.Get()))
        return *std::move(bytes);
    return std::nullopt;
}

std::vector<std::pair<std::string, PropertyValue>> OwnProperties(MIDIObjectRef object) {
    std::vector<std::pair<std::string, PropertyValue>> properties;
    const ItemCount count = KestrinMIDIObjectGetNumberOfProperties(object);
    for (ItemCount i = 0; i < count; ++i) {
        const Text key(KestrinMIDIObjectCopyPropertyKey(object, i));
        if (!key)
            continue;
        std::string name = MidiObject::FromText(key.Get());
        if (auto value = GetProperty(object, name))
            properties.emplace_back(std::move(name), *std::move(value));
    }
    return properties;
}

std::vector<std::pair<std::string, PropertyValue>> LiveProperties(MIDIObjectRef object) {
    std::vector<std::pair<std::string, PropertyValue>> properties;
    for (const CFStringRef key :
         {kKestrinMIDIPropertySequencerClient, kKestrinMIDIPropertySequencerPort,
          kKestrinMIDIPropertyCard, kKestrinMIDIPropertyCardID, kKestrinMIDIPropertyRawMIDI,
          kKestrinMIDIPropertyUSBPath, kKestrinMIDIPropertyUSBSerial,
          kKestrinMIDIPropertyUSBVendorProduct}) {
        std::string name = MidiObject::FromText(key);
        if (auto value = GetProperty(object, name))
            properties.emplace_back(std::move(name), *std::move(value));
    }
    return properties;
}

void SetProperty(MIDIObjectRef object, const std::string& key, const PropertyValue& value) {
    Check(Store(object, RequireText(key).Get(), value),
          Message("cannot set \"%1\"", Printable(key)));
}

void RemoveProperty(MIDIObjectRef object, const std::string& key) {
    Check(MIDIObjectRemoveProperty(object, RequireText(key).Get()),
          Message("cannot remove \"%1\"", Printable(key)));
}

void Check(OSStatus status, const std::string& refusal) {
    if (status != noErr)
        throw Failure(Message("%1: %2", refusal, MeaningOf(status)));
}

std::string ToHex(const Bytes& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(bytes.size() * 2);
    for (const unsigned char byte : bytes) {
        hex += kDigits[byte >> 4U];
        hex += kDigits[byte & 15U];
    }
    return hex;
}

std::optional<Bytes> FromHex(std::string_view hex) {
    if (hex.size() % 2 != 0)
        return std::nullopt;
    Bytes bytes(hex.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* pair = hex.data() + 2 * i;
        const auto [end, error] = std::from_chars(pair, pair + 2, bytes[i], 16);
        if (error != std::errc() || end != pair + 2)
            return std::nullopt;
    }
    return bytes;
}

} // namespace MidiSetup
