#include "Surfaces/SurfaceDiscovery.h"

#include "Surfaces/IsolatedText.h"
#include "Surfaces/MidiObject.h"
#include "Surfaces/SurfaceGroups.h"
#include "Surfaces/SurfaceModels.h"

#include <CoreMIDI/MIDIReading.h>

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace {

const SurfaceModel* ModelOf(MIDIObjectRef object) {
    const auto manufacturer = MidiObject::String(object, kMIDIPropertyManufacturer);
    const auto model = MidiObject::String(object, kMIDIPropertyModel);
    return manufacturer && model ? FindSurfaceModel(*manufacturer, *model) : nullptr;
}

bool IsEndpoint(MIDIObjectType type) {
    return type == kMIDIObjectType_Source || type == kMIDIObjectType_Destination ||
           type == kMIDIObjectType_ExternalSource || type == kMIDIObjectType_ExternalDestination;
}

/// Where the endpoints of one unit meet: an endpoint's ID becomes that of its device.
MIDIUniqueID ResolveToDevice(MIDIUniqueID id) {
    const auto found = MidiObject::WithID(id);
    const MIDIDeviceRef device =
        found && IsEndpoint(found->type) ? MidiObject::DeviceOf(found->reference) : 0;
    if (device == 0)
        return id;
    if (const auto deviceID = MidiObject::Integer(device, kMIDIPropertyUniqueID))
        return *deviceID;
    const auto packed = MidiObject::Data(device, kMIDIPropertyUniqueID);
    const auto ids = packed ? MidiObject::IDsIn(*packed) : std::vector<MIDIUniqueID>();
    return ids.empty() ? id : ids.front();
}

bool Complete(MidiDevice& record) {
    const auto surface = MidiObject::WithID(record.uniqueID);
    const auto model =
        surface ? MidiObject::String(surface->reference, kMIDIPropertyModel) : std::nullopt;
    if (!model)
        return false;
    ReadGroupSettings(surface->reference, record);
    record.surfaceType = SurfaceTypeOf(*model);
    return true;
}

/// One walk over endpoints: the list that it fills, with an index of the records by unique ID.
class Scan {
public:
    explicit Scan(std::vector<MidiDevice>& list);
    /// Answers the record that the endpoint completed, or null.
    MidiDevice* Consider(MIDIEndpointRef endpoint, bool isSource);

private:
    MidiDevice* Meet(MIDIUniqueID id, MIDIEndpointRef endpoint, bool isSource);

    std::vector<MidiDevice>& fList;
    std::unordered_map<MIDIUniqueID, std::size_t> fIndex;
};

Scan::Scan(std::vector<MidiDevice>& list)
    : fList(list) {
    // Of several records with one ID the first is the one that is found.
    for (std::size_t i = 0; i < list.size(); ++i)
        fIndex.emplace(list[i].uniqueID, i);
}

MidiDevice* Scan::Consider(MIDIEndpointRef endpoint, bool isSource) {
    const MIDIUniqueID id = SurfaceBehind(endpoint);
    return id != 0 ? Meet(id, endpoint, isSource) : nullptr;
}

MidiDevice* Scan::Meet(MIDIUniqueID id, MIDIEndpointRef endpoint, bool isSource) {
    const auto [entry, isNew] = fIndex.emplace(id, fList.size());
    if (isNew)
        fList.emplace_back().uniqueID = id;
    MidiDevice& record = fList[entry->second];
    (isSource ? record.sourceEndpoint : record.destinationEndpoint) = endpoint;
    if (record.sourceEndpoint == 0 || record.destinationEndpoint == 0 || record.surfaceType != 0)
        return nullptr;
    return Complete(record) ? &record : nullptr;
}

bool IsIncomplete(const MidiDevice& record) {
    return record.surfaceType == 0 || record.destinationEndpoint == 0 || record.sourceEndpoint == 0;
}

/// What of a name leaves room for the final zero.
std::string CutToFit(std::string name) {
    return CutToBytes(std::move(name), kMidiEndpointNameSize - 1);
}

} // namespace

bool IsUniqueIDOurDevice(MIDIUniqueID id) {
    const auto found = MidiObject::WithID(id);
    const SurfaceModel* const model = found ? ModelOf(found->reference) : nullptr;
    return model != nullptr && !model->isOwnPort;
}

MIDIUniqueID IsDeviceAttachedToEndpoint(MIDIEndpointRef endpoint) {
    const auto id = MidiObject::Integer(endpoint, kMIDIPropertyConnectionUniqueID);
    if (id && IsUniqueIDOurDevice(*id))
        return *id;
    const auto list = MidiObject::Data(endpoint, kMIDIPropertyConnectionUniqueID);
    const auto ids = list ? MidiObject::IDsIn(*list) : std::vector<MIDIUniqueID>();
    const auto first = std::find_if(ids.begin(), ids.end(), IsUniqueIDOurDevice);
    return first == ids.end() ? 0 : *first;
}

MIDIUniqueID IsEndpointAVirtualMIDIPort(MIDIEndpointRef endpoint) {
    const auto id = MidiObject::Integer(endpoint, kMIDIPropertyUniqueID);
    const auto found = id ? MidiObject::WithID(*id) : std::nullopt;
    const SurfaceModel* const model = found ? ModelOf(found->reference) : nullptr;
    if (model == nullptr || !model->isOwnPort)
        return 0;
    const auto name = MidiObject::String(found->reference, kMIDIPropertyName);
    return name && name->starts_with(kSurfacePort) ? *id : 0;
}

MIDIUniqueID SurfaceBehind(MIDIEndpointRef endpoint) {
    MIDIUniqueID id = IsEndpointAVirtualMIDIPort(endpoint);
    if (id == 0)
        id = IsDeviceAttachedToEndpoint(endpoint);
    return id == 0 ? 0 : ResolveToDevice(id);
}

void MaybeAddEndPointToDeviceList(std::vector<MidiDevice>& list, MIDIEndpointRef endpoint,
                                  bool isSource) {
    if (MidiDevice* const completed = Scan(list).Consider(endpoint, isSource))
        StoreGroupDefaults({completed, 1});
}

void GetAvailableDevices(std::vector<MidiDevice>& list) {
    ReadAvailableDevices(list);
    StoreGroupDefaults(list);
}

void ReadAvailableDevices(std::vector<MidiDevice>& list) {
    list.clear();
    const MIDIReading reading;
    Scan scan(list);
    const ItemCount sources = MIDIGetNumberOfSources();
    for (ItemCount i = 0; i < sources; ++i)
        scan.Consider(MIDIGetSource(i), true);
    const ItemCount destinations = MIDIGetNumberOfDestinations();
    for (ItemCount i = 0; i < destinations; ++i)
        scan.Consider(MIDIGetDestination(i), false);
    std::erase_if(list, IsIncomplete);
}

std::optional<std::string> JoinedSurfaceName(const MidiDevice& device,
                                             const std::function<Shown>& shown) {
    const auto part = [&](MIDIObjectRef object) -> std::optional<std::string> {
        auto name = MidiObject::String(object, kMIDIPropertyName);
        return name ? std::optional(shown(CutToFit(*std::move(name)))) : std::nullopt;
    };
    const auto surface = MidiObject::WithID(device.uniqueID);
    const auto surfaceName = surface ? part(surface->reference) : std::nullopt;
    const auto portName = part(device.destinationEndpoint);
    if (!surfaceName || !portName)
        return std::nullopt;

    const MIDIDeviceRef portDevice = MidiObject::DeviceOf(device.destinationEndpoint);
    if (portDevice == surface->reference)
        return *surfaceName + " " + *portName;
    if (portDevice == 0)
        return *surfaceName + " on " + *portName;
    const auto interfaceName = part(portDevice);
    if (!interfaceName)
        return std::nullopt;
    return *surfaceName + " on " + *interfaceName + " output " + *portName;
}

void GetMidiEndpointName(MidiDevice device, char* out) {
    if (auto name = JoinedSurfaceName(device, Isolated)) {
        const std::string fitting = CutToFit(*std::move(name));
        std::memcpy(out, fitting.c_str(), fitting.size() + 1);
    }
}
