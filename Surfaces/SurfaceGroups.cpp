#include "Surfaces/SurfaceGroups.h"

#include <CoreFoundation/CFHolder.h>
#include <CoreMIDI/MIDIChanges.h>

#include <algorithm>

namespace {

CFHolder<CFStringRef> KeyOf(const SurfaceSetting& setting) {
    return CFHolder<CFStringRef>(
        CFStringCreateWithCString(nullptr, setting.key, kCFStringEncodingUTF8));
}

SInt32 DefaultOf(const SurfaceSetting& setting, const MidiDevice& device) {
    return setting.defaultValue != nullptr ? device.*setting.defaultValue : 0;
}

} // namespace

void ReadGroupSettings(MIDIObjectRef object, MidiDevice& device) {
    for (const SurfaceSetting* setting : kSurfaceSettings) {
        const auto key = KeyOf(*setting);
        SInt32& value = device.*setting->value;
        if (MIDIObjectGetIntegerProperty(object, key.Get(), &value) == noErr)
            continue;
        value = DefaultOf(*setting, device);
        MIDIObjectSetIntegerProperty(object, key.Get(), value);
    }
}

SInt32 FreeGroupPosition(const std::vector<MidiDevice>& devices, std::size_t index) {
    const MidiDevice& device = devices[index];
    const auto isTaken = [&](SInt32 position) {
        return std::any_of(devices.begin(), devices.end(), [&](const MidiDevice& other) {
            return other.groupPosition == position && other.groupID == device.groupID &&
                   &other != &device;
        });
    };
    SInt32 position = device.groupPosition;
    while (position < kLastGroupSetting && isTaken(position))
        ++position;
    return position < kFirstGroupSetting || position > kLastGroupSetting ? kLastGroupSetting
                                                                         : position;
}

void NormaliseGroupPositions(std::vector<MidiDevice>& devices) {
    for (std::size_t i = 0; i < devices.size(); ++i)
        devices[i].groupPosition = FreeGroupPosition(devices, i);
}

OSStatus WriteGroupSettings(const std::vector<MidiDevice>& devices) {
    if (devices.empty())
        return noErr;
    MIDIChanges changes;
    if (changes.Status() != noErr)
        return changes.Status();
    for (const MidiDevice& device : devices) {
        MIDIObjectRef object = 0;
        MIDIObjectType type{};
        if (MIDIObjectFindByUniqueID(device.uniqueID, &object, &type) != noErr)
            break;
        for (const SurfaceSetting* setting : kSurfaceSettings)
            MIDIObjectSetIntegerProperty(object, KeyOf(*setting).Get(), device.*setting->value);
    }
    return changes.End();
}
