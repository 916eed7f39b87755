#include "tools/midisetup/Properties.h"

#include "tools/midisetup/Failure.h"
#include "tools/midisetup/Output.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <charconv>

namespace MidiSetup {

namespace {

using Data = CFHolder<CFDataRef>;

std::string MeaningOf(OSStatus status) {
    switch (status) {
    case kMIDIUnknownProperty:
        return "it has no such property of its own";
    case kMIDIWrongPropertyType:
        return "the property has another type";
    case kMIDIServerStartErr:
        return "the database cannot be written";
    case kMIDIObjectNotFound:
        return "there is no such object any more";
    case kMIDIIDNotUnique:
        return "another object has that unique ID";
    case kMIDINotPermitted:
        return "the MIDI service does not permit it";
    default:
        return "status " + std::to_string(status);
    }
}

std::optional<Bytes> GetData(MIDIObjectRef object, CFStringRef key) {
    CFDataRef data = nullptr;
    if (MIDIObjectGetDataProperty(object, key, &data) != noErr)
        return std::nullopt;
    const Data holder(data);
    const UInt8* first = CFDataGetBytePtr(data);
    return Bytes(first, first + CFDataGetLength(data));
}

OSStatus Store(MIDIObjectRef object, CFStringRef key, const PropertyValue& value) {
    if (const auto* number = std::get_if<SInt32>(&value))
        return MIDIObjectSetIntegerProperty(object, key, *number);
    if (const auto* text = std::get_if<std::string>(&value))
        return MIDIObjectSetStringProperty(object, key, ToText(*text).Get());
    const auto& bytes = std::get<Bytes>(value);
    const Data data(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
    return MIDIObjectSetDataProperty(object, key, data.Get());
}

} // namespace

std::string FromText(CFStringRef text) {
    const CFRange whole = CFRangeMake(0, CFStringGetLength(text));
    CFIndex size = 0;
    CFStringGetBytes(text, whole, kCFStringEncodingUTF8, '?', false, nullptr, 0, &size);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(text, whole, kCFStringEncodingUTF8, '?', false,
                     reinterpret_cast<UInt8*>(utf8.data()), size, &size);
    return utf8;
}

Text ToText(std::string_view utf8) {
    Text text(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(utf8.data()),
                                      static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8,
                                      false));
    if (!text)
        throw Failure("\"" + Printable(utf8) + "\" is not valid UTF-8");
    return text;
}

std::optional<SInt32> GetInteger(MIDIObjectRef object, CFStringRef key) {
    SInt32 value = 0;
    if (MIDIObjectGetIntegerProperty(object, key, &value) != noErr)
        return std::nullopt;
    return value;
}

std::optional<std::string> GetString(MIDIObjectRef object, CFStringRef key) {
    CFStringRef text = nullptr;
    if (MIDIObjectGetStringProperty(object, key, &text) != noErr)
        return std::nullopt;
    return FromText(Text(text).Get());
}

std::optional<PropertyValue> GetProperty(MIDIObjectRef object, const std::string& key) {
    const Text text = ToText(key);
    if (auto number = GetInteger(object, text.Get()))
        return *number;
    if (auto string = GetString(object, text.Get()))
        return *std::move(string);
    if (auto bytes = GetData(object, text.Get()))
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
        std::string name = FromText(key.Get());
        if (auto value = GetProperty(object, name))
            properties.emplace_back(std::move(name), *std::move(value));
    }
    return properties;
}

void SetProperty(MIDIObjectRef object, const std::string& key, const PropertyValue& value) {
    Check(Store(object, ToText(key).Get(), value), "set \"" + Printable(key) + "\"");
}

void RemoveProperty(MIDIObjectRef object, const std::string& key) {
    Check(MIDIObjectRemoveProperty(object, ToText(key).Get()), "remove \"" + Printable(key) + "\"");
}

void Check(OSStatus status, const std::string& action) {
    if (status != noErr)
        throw Failure("cannot " + action + ": " + MeaningOf(status));
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
