#include "Surfaces/MidiObject.h"

#include <cstring>

namespace MidiObject {

std::string FromText(CFStringRef text) {
    // No unit takes more than three bytes.
    const CFIndex length = CFStringGetLength(text);
    std::string utf8(static_cast<std::size_t>(length) * 3, '\0');
    CFIndex size = 0;
    CFStringGetBytes(text, CFRangeMake(0, length), kCFStringEncodingUTF8, '?', false,
                     reinterpret_cast<UInt8*>(utf8.data()), static_cast<CFIndex>(utf8.size()),
                     &size);
    utf8.resize(static_cast<std::size_t>(size));
    return utf8;
}

Text ToText(std::string_view utf8) {
    return Text(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(utf8.data()),
                                        static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8,
                                        false));
}

std::optional<Found> WithID(MIDIUniqueID id) {
    Found found;
    if (MIDIObjectFindByUniqueID(id, &found.reference, &found.type) != noErr)
        return std::nullopt;
    return found;
}

std::optional<SInt32> Integer(MIDIObjectRef object, CFStringRef key) {
    SInt32 value = 0;
    if (MIDIObjectGetIntegerProperty(object, key, &value) != noErr)
        return std::nullopt;
    return value;
}

std::optional<std::string> String(MIDIObjectRef object, CFStringRef key) {
    Text text;
    if (MIDIObjectGetStringProperty(object, key, text.Receive()) != noErr)
        return std::nullopt;
    return FromText(text.Get());
}

std::optional<Bytes> Data(MIDIObjectRef object, CFStringRef key) {
    CFHolder<CFDataRef> data;
    if (MIDIObjectGetDataProperty(object, key, data.Receive()) != noErr)
        return std::nullopt;
    const UInt8* const first = CFDataGetBytePtr(data.Get());
    return Bytes(first, first + CFDataGetLength(data.Get()));
}

MIDIUniqueID ID(MIDIObjectRef object) {
    return Integer(object, kMIDIPropertyUniqueID).value_or(kMIDIInvalidUniqueID);
}

std::vector<MIDIUniqueID> IDsIn(const Bytes& bytes) {
    std::vector<MIDIUniqueID> ids(bytes.size() / sizeof(MIDIUniqueID));
    if (!ids.empty())
        std::memcpy(ids.data(), bytes.data(), ids.size() * sizeof(MIDIUniqueID));
    return ids;
}

MIDIDeviceRef DeviceOf(MIDIEndpointRef endpoint) {
    MIDIEntityRef entity = 0;
    MIDIDeviceRef device = 0;
    if (MIDIEndpointGetEntity(endpoint, &entity) != noErr || entity == 0)
        return 0;
    return MIDIEntityGetDevice(entity, &device) == noErr ? device : 0;
}

} // namespace MidiObject
