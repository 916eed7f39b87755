#include "Surfaces/SurfaceGroups.h"

#include "Surfaces/MidiObject.h"

#include <CoreMIDI/MIDIChanges.h>

#include <algorithm>

namespace {

SInt32 DefaultOf(const SurfaceSetting& setting, const MidiDevice& device) {
    return setting.defaultValue != nullptr ? device.*setting.defaultValue : 0;
}

void WriteSettings(MIDIObjectRef object, const MidiDevice& device) {
    for (const SurfaceSetting* setting : kSurfaceSettings)
        MIDIObjectSetIntegerProperty(object, MidiObject::ToText(setting->key).Get(),
                                     device.*setting->value);
}

} // namespace

bool ReadGroupSettings(MIDIObjectRef object, MidiDevice& device) {
    bool hasAll = true;
    for (const SurfaceSetting* setting : kSurfaceSettings) {
        const auto stored = MidiObject::Integer(object, MidiObject::ToText(setting->key).Get());
        device.*setting->value = stored.value_or(DefaultOf(*setting, device));
        hasAll = hasAll && stored;
    }
    return hasAll;
}

OSStatus StoreGroupDefaults(std::span<MidiDevice> devices) {
    const auto lacksSettings = [](MidiDevice& device) {
        const auto object = MidiObject::WithID(device.uniqueID);
        return object && !ReadGroupSettings(object->reference, device);
    };
    if (std::none_of(devices.begin(), devices.end(), lacksSettings))
        return noErr;
    MIDIChanges changes;
    if (changes.Status() != noErr)
        return changes.Status();
    for (MidiDevice& device : devices) {
        if (lacksSettings(device))
            WriteSettings(MidiObject::WithID(device.uniqueID)->reference, device);
    }
    return changes.End();
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
        const auto object = MidiObject::WithID(device.uniqueID);
        if (!object)
            break;
        WriteSettings(object->reference, device);
    }
    return changes.End();
}
