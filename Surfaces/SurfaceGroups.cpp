#include "Surfaces/SurfaceGroups.h"

#include <CoreFoundation/CFHolder.h>

#include <array>
#include <cstdint>
#include <unordered_map>

namespace {

CFHolder<CFStringRef> KeyOf(const SurfaceSetting& setting) {
    return CFHolder<CFStringRef>(
        CFStringCreateWithCString(nullptr, setting.key, kCFStringEncodingUTF8));
}

SInt32 DefaultOf(const SurfaceSetting& setting, const MidiDevice& device) {
    return setting.defaultValue != nullptr ? device.*setting.defaultValue : 0;
}

/// How often the positions of one group are taken. A search that comes to kLastGroupSetting ends
/// there, so only the positions below it are kept; they are apart by sign, since a search that
/// starts below zero matters only by whether it reaches zero.
class TakenPositions {
public:
    void Add(SInt32 position) { Count(position, 1); }
    void Remove(SInt32 position);

    /// Counts up from `position` past all that is taken.
    SInt32 FirstFreeFrom(SInt32 position);

private:
    void Count(SInt32 position, int change);
    bool ReachesZeroFrom(SInt32 position);

    std::array<int, kLastGroupSetting> fCounts{};
    std::unordered_map<SInt32, int> fNegativeCounts;

    // Every position from here to -1 is taken. It moves down as far as a search needs and up when
    // one of them is freed; none is ever taken anew while normalising, so all searches share its
    // way down.
    SInt32 fLowestOfRun = 0;
};

void TakenPositions::Count(SInt32 position, int change) {
    if (position < 0)
        fNegativeCounts[position] += change;
    else if (position < kLastGroupSetting)
        fCounts[static_cast<std::size_t>(position)] += change;
}

void TakenPositions::Remove(SInt32 position) {
    Count(position, -1);
    if (position >= fLowestOfRun && position < 0 && fNegativeCounts[position] == 0)
        fLowestOfRun = position + 1;
}

bool TakenPositions::ReachesZeroFrom(SInt32 position) {
    while (fLowestOfRun > position) {
        const auto below = fNegativeCounts.find(fLowestOfRun - 1);
        if (below == fNegativeCounts.end() || below->second == 0)
            return false;
        --fLowestOfRun;
    }
    return true;
}

SInt32 TakenPositions::FirstFreeFrom(SInt32 position) {
    if (position < 0) {
        if (!ReachesZeroFrom(position))
            return kLastGroupSetting;
        position = 0;
    }
    while (position < kLastGroupSetting && fCounts[static_cast<std::size_t>(position)] > 0)
        ++position;
    return position < kLastGroupSetting ? position : kLastGroupSetting;
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
    TakenPositions taken;
    for (std::size_t other = 0; other < devices.size(); ++other) {
        if (other != index && devices[other].groupID == devices[index].groupID)
            taken.Add(devices[other].groupPosition);
    }
    return taken.FirstFreeFrom(devices[index].groupPosition);
}

void NormaliseGroupPositions(std::vector<MidiDevice>& devices) {
    std::unordered_map<SInt32, TakenPositions> groups;
    for (const MidiDevice& device : devices)
        groups[device.groupID].Add(device.groupPosition);

    for (MidiDevice& device : devices) {
        TakenPositions& taken = groups[device.groupID];
        taken.Remove(device.groupPosition);
        device.groupPosition = taken.FirstFreeFrom(device.groupPosition);
        taken.Add(device.groupPosition);
    }
}

void WriteGroupSettings(const std::vector<MidiDevice>& devices) {
    for (const MidiDevice& device : devices) {
        MIDIObjectRef object = 0;
        MIDIObjectType type{};
        if (MIDIObjectFindByUniqueID(device.uniqueID, &object, &type) != noErr)
            return;
        for (const SurfaceSetting* setting : kSurfaceSettings)
            MIDIObjectSetIntegerProperty(object, KeyOf(*setting).Get(), device.*setting->value);
    }
}
