#include "Surfaces/SurfaceDiscovery.h"

#include "Surfaces/SurfaceGroups.h"

#include <CoreFoundation/CFHolder.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <unordered_map>

namespace {

using Text = CFHolder<CFStringRef>;
using Data = CFHolder<CFDataRef>;

struct FoundObject {
    MIDIObjectRef reference = 0;
    MIDIObjectType type{};
};

std::optional<FoundObject> Find(MIDIUniqueID id) {
    FoundObject found;
    if (MIDIObjectFindByUniqueID(id, &found.reference, &found.type) != noErr)
        return std::nullopt;
    return found;
}

std::optional<SInt32> IntegerOf(MIDIObjectRef object, CFStringRef key) {
    SInt32 value = 0;
    if (MIDIObjectGetIntegerProperty(object, key, &value) != noErr)
        return std::nullopt;
    return value;
}

Text TextOf(MIDIObjectRef object, CFStringRef key) {
    CFStringRef text = nullptr;
    if (MIDIObjectGetStringProperty(object, key, &text) != noErr)
        return Text();
    return Text(text);
}

Data DataOf(MIDIObjectRef object, CFStringRef key) {
    CFDataRef data = nullptr;
    if (MIDIObjectGetDataProperty(object, key, &data) != noErr)
        return Data();
    return Data(data);
}

bool BeginsWith(const Text& text, CFStringRef beginning) {
    if (!text)
        return false;
    const CFRange whole = CFRangeMake(0, CFStringGetLength(text.Get()));
    return CFStringFindWithOptions(text.Get(), beginning, whole, kCFCompareAnchored, nullptr);
}

// The IDs of a list are packed in the host's byte order; a rest of less than one ID counts for
// nothing.
std::size_t CountOfIDs(const Data& list) {
    return static_cast<std::size_t>(CFDataGetLength(list.Get())) / sizeof(MIDIUniqueID);
}

MIDIUniqueID IDAt(const Data& list, std::size_t index) {
    MIDIUniqueID id = 0;
    std::memcpy(&id, CFDataGetBytePtr(list.Get()) + index * sizeof id, sizeof id);
    return id;
}

bool SameBytes(const Data& one, const Data& other) {
    if (one.Get() == other.Get())
        return true;
    const CFIndex length = CFDataGetLength(one.Get());
    return length == CFDataGetLength(other.Get()) &&
           std::equal(CFDataGetBytePtr(one.Get()), CFDataGetBytePtr(one.Get()) + length,
                      CFDataGetBytePtr(other.Get()));
}

/// Finds the first surface in lists of connected devices. The last list is remembered, because all
/// endpoints of a device that carries one inherit it, and it may be long.
class ConnectionLists {
public:
    MIDIUniqueID FirstSurfaceIn(Data list);

private:
    Data fLastList;
    MIDIUniqueID fLastSurface = 0;
};

MIDIUniqueID ConnectionLists::FirstSurfaceIn(Data list) {
    if (fLastList && SameBytes(list, fLastList))
        return fLastSurface;
    fLastSurface = 0;
    for (std::size_t i = 0; i < CountOfIDs(list) && fLastSurface == 0; ++i) {
        if (const MIDIUniqueID id = IDAt(list, i); IsUniqueIDOurDevice(id))
            fLastSurface = id;
    }
    fLastList = std::move(list);
    return fLastSurface;
}

MIDIUniqueID AttachedSurface(MIDIEndpointRef endpoint, ConnectionLists& lists) {
    if (endpoint == 0)
        return 0;
    const auto id = IntegerOf(endpoint, kMIDIPropertyConnectionUniqueID);
    if (id && IsUniqueIDOurDevice(*id))
        return *id;
    Data list = DataOf(endpoint, kMIDIPropertyConnectionUniqueID);
    return list ? lists.FirstSurfaceIn(std::move(list)) : 0;
}

bool IsEndpoint(MIDIObjectType type) {
    return type == kMIDIObjectType_Source || type == kMIDIObjectType_Destination ||
           type == kMIDIObjectType_ExternalSource || type == kMIDIObjectType_ExternalDestination;
}

/// The device that owns an endpoint; 0 for a virtual endpoint.
MIDIDeviceRef DeviceOf(MIDIEndpointRef endpoint) {
    MIDIEntityRef entity = 0;
    MIDIDeviceRef device = 0;
    if (MIDIEndpointGetEntity(endpoint, &entity) != noErr || entity == 0)
        return 0;
    return MIDIEntityGetDevice(entity, &device) == noErr ? device : 0;
}

/// Where the endpoints of one unit meet: an endpoint's ID becomes that of its device.
MIDIUniqueID ResolveToDevice(MIDIUniqueID id) {
    const auto found = Find(id);
    const MIDIDeviceRef device = found && IsEndpoint(found->type) ? DeviceOf(found->reference) : 0;
    if (device == 0)
        return id;
    if (const auto deviceID = IntegerOf(device, kMIDIPropertyUniqueID))
        return *deviceID;
    const Data packed = DataOf(device, kMIDIPropertyUniqueID);
    return packed && CountOfIDs(packed) > 0 ? IDAt(packed, 0) : id;
}

SInt32 SurfaceTypeOf(const Text& model) {
    // The extender's model begins with that of the main unit.
    if (BeginsWith(model, CFSTR("Mackie Control Exp")))
        return kSurfaceTypeMackieControlExtender;
    if (BeginsWith(model, CFSTR("Mackie Control")) || BeginsWith(model, CFSTR("MCU Pro USB")))
        return kSurfaceTypeMackieControl;
    if (BeginsWith(model, CFSTR("SAC-2K")))
        return kSurfaceTypeSAC2K;
    return kSurfaceTypeOther;
}

void Complete(MidiDevice& record) {
    const auto surface = Find(record.uniqueID);
    const Text model = surface ? TextOf(surface->reference, kMIDIPropertyModel) : Text();
    if (!model)
        return;
    ReadGroupSettings(surface->reference, record);
    record.surfaceType = SurfaceTypeOf(model);
}

/// One walk over endpoints: the list that it fills, with an index of the records by unique ID.
class Scan {
public:
    explicit Scan(std::vector<MidiDevice>& list);
    void Consider(MIDIEndpointRef endpoint, bool isSource);

private:
    void Meet(MIDIUniqueID id, MIDIEndpointRef endpoint, bool isSource);

    std::vector<MidiDevice>& fList;
    std::unordered_map<MIDIUniqueID, std::size_t> fIndex;
    ConnectionLists fConnections;
};

Scan::Scan(std::vector<MidiDevice>& list)
    : fList(list) {
    // Of several records with one ID the first is the one that is found.
    for (std::size_t i = 0; i < list.size(); ++i)
        fIndex.emplace(list[i].uniqueID, i);
}

void Scan::Consider(MIDIEndpointRef endpoint, bool isSource) {
    MIDIUniqueID id = IsEndpointAVirtualMIDIPort(endpoint);
    if (id == 0)
        id = AttachedSurface(endpoint, fConnections);
    if (id != 0)
        Meet(ResolveToDevice(id), endpoint, isSource);
}

void Scan::Meet(MIDIUniqueID id, MIDIEndpointRef endpoint, bool isSource) {
    const auto [entry, isNew] = fIndex.emplace(id, fList.size());
    if (isNew)
        fList.emplace_back().uniqueID = id;
    MidiDevice& record = fList[entry->second];
    (isSource ? record.sourceEndpoint : record.destinationEndpoint) = endpoint;
    if (record.sourceEndpoint != 0 && record.destinationEndpoint != 0 && record.surfaceType == 0)
        Complete(record);
}

bool IsIncomplete(const MidiDevice& record) {
    return record.surfaceType == 0 || record.destinationEndpoint == 0 || record.sourceEndpoint == 0;
}

// Cuts after the last whole character that leaves room for the final zero.
std::string CutToFit(std::string name) {
    std::size_t end = kMidiEndpointNameSize - 1;
    if (name.size() <= end)
        return name;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U)
        --end;
    name.resize(end);
    return name;
}

std::optional<std::string> NameOf(MIDIObjectRef object) {
    const Text name = TextOf(object, kMIDIPropertyName);
    if (!name)
        return std::nullopt;
    char buffer[kMidiEndpointNameSize] = {};
    CFIndex used = 0;
    const CFRange whole = CFRangeMake(0, CFStringGetLength(name.Get()));
    CFStringGetBytes(name.Get(), whole, CFStringGetSystemEncoding(), '?', false,
                     reinterpret_cast<UInt8*>(buffer), sizeof buffer - 1, &used);
    return std::string(buffer);
}

/// The surface and its port; with the interface between them where the port is another device's.
std::optional<std::string> DisplayName(const MidiDevice& device) {
    const auto surface = Find(device.uniqueID);
    const auto surfaceName = surface ? NameOf(surface->reference) : std::nullopt;
    const auto portName = NameOf(device.destinationEndpoint);
    if (!surfaceName || !portName)
        return std::nullopt;

    const MIDIDeviceRef portDevice = DeviceOf(device.destinationEndpoint);
    if (portDevice == surface->reference)
        return *surfaceName + " " + *portName;
    const auto interfaceName = NameOf(portDevice);
    if (!interfaceName)
        return std::nullopt;
    return *surfaceName + " on " + *interfaceName + " output " + *portName;
}

} // namespace

bool IsUniqueIDOurDevice(MIDIUniqueID id) {
    const auto found = Find(id);
    if (!found)
        return false;
    const Text manufacturer = TextOf(found->reference, kMIDIPropertyManufacturer);
    const bool isMackie = BeginsWith(manufacturer, CFSTR("Mackie"));
    if (!isMackie && !BeginsWith(manufacturer, CFSTR("Radikal Technologies")))
        return false;
    const Text model = TextOf(found->reference, kMIDIPropertyModel);
    if (isMackie)
        return BeginsWith(model, CFSTR("HUI")) || BeginsWith(model, CFSTR("Mackie Control"));
    return BeginsWith(model, CFSTR("SAC-2K"));
}

MIDIUniqueID IsDeviceAttachedToEndpoint(MIDIEndpointRef endpoint) {
    ConnectionLists lists;
    return AttachedSurface(endpoint, lists);
}

MIDIUniqueID IsEndpointAVirtualMIDIPort(MIDIEndpointRef endpoint) {
    if (endpoint == 0)
        return 0;
    const auto id = IntegerOf(endpoint, kMIDIPropertyUniqueID);
    const auto found = id ? Find(*id) : std::nullopt;
    if (!found)
        return 0;
    // Of the unit's ports the first alone is the surface. An AlphaTrack is deliberately not taken
    // for one, although it is a port of its own too.
    const bool isSurface =
        BeginsWith(TextOf(found->reference, kMIDIPropertyManufacturer),
                   CFSTR("LOUD Technologies, Inc.")) &&
        BeginsWith(TextOf(found->reference, kMIDIPropertyModel), CFSTR("MCU Pro USB")) &&
        BeginsWith(TextOf(found->reference, kMIDIPropertyName), CFSTR("Port 1"));
    return isSurface ? *id : 0;
}

void MaybeAddEndPointToDeviceList(std::vector<MidiDevice>& list, MIDIEndpointRef endpoint,
                                  bool isSource) {
    Scan(list).Consider(endpoint, isSource);
}

void GetAvailableDevices(std::vector<MidiDevice>& list) {
    list.clear();
    Scan scan(list);
    const ItemCount sources = MIDIGetNumberOfSources();
    for (ItemCount i = 0; i < sources; ++i)
        scan.Consider(MIDIGetSource(i), true);
    const ItemCount destinations = MIDIGetNumberOfDestinations();
    for (ItemCount i = 0; i < destinations; ++i)
        scan.Consider(MIDIGetDestination(i), false);
    std::erase_if(list, IsIncomplete);
}

void GetMidiEndpointName(MidiDevice device, char* out) {
    if (auto name = DisplayName(device)) {
        const std::string fitting = CutToFit(std::move(*name));
        std::memcpy(out, fitting.c_str(), fitting.size() + 1);
    }
}
