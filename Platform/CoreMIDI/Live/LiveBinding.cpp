#include "Platform/CoreMIDI/Live/LiveBinding.h"

#include "Platform/CoreMIDI/Live/DeviceMatching.h"
#include "Platform/CoreMIDI/Live/EndpointNames.h"

#include <algorithm>
#include <set>

namespace KestrinMIDI {

namespace {

const std::string kPortKind = "port";

HardwareRecord RecordOf(const LivePort& port) {
    return {kPortKind, "", std::to_string(port.place), "", port.name};
}

StoredObject* FindPort(const StoredObject& device, const std::string& place) {
    const auto found =
        std::find_if(device.children.begin(), device.children.end(), [&](StoredObject* entity) {
            return entity->hardware && entity->hardware->place == place;
        });
    return found == device.children.end() ? nullptr : *found;
}

StoredObject* FindEndpoint(const StoredObject& entity, MIDIObjectType type) {
    const auto found =
        std::find_if(entity.children.begin(), entity.children.end(),
                     [type](StoredObject* endpoint) { return endpoint->type == type; });
    return found == entity.children.end() ? nullptr : *found;
}

/// The objects of a list that have hardware, and their records beside them.
struct KnownUnits {
    std::vector<MIDIObjectRef> refs;
    std::vector<HardwareRecord> records;
};

KnownUnits KnownAmong(const ObjectStore::List& objects, MIDIObjectType type) {
    KnownUnits known;
    for (const StoredObject* const object : objects) {
        if (!object->hardware || object->type != type)
            continue;
        known.refs.push_back(object->ref);
        known.records.push_back(*object->hardware);
    }
    return known;
}

template <typename Unit>
std::vector<HardwareRecord> RecordsOf(const std::vector<Unit>& units) {
    std::vector<HardwareRecord> records;
    records.reserve(units.size());
    for (const Unit& unit : units)
        records.push_back(unit.record);
    return records;
}

/// For each of the live units the object that it is, or null.
std::vector<StoredObject*> ObjectsOf(const ObjectStore& store, const KnownUnits& known,
                                     const std::vector<HardwareRecord>& live) {
    std::vector<StoredObject*> objects;
    for (const std::optional<std::size_t>& match : MatchUnits(known.records, live))
        objects.push_back(match ? store.Find(known.refs[*match]) : nullptr);
    return objects;
}

} // namespace

LiveBinding::LiveBinding(ObjectStore& store)
    : fStore(store) {}

bool LiveBinding::Find(const LiveStudio& studio) {
    fEditor = nullptr;
    return Bind(studio);
}

OSStatus LiveBinding::Write(const LiveStudio& studio, ObjectEditor& editor) {
    fEditor = &editor;
    Bind(studio);
    return fStatus;
}

bool LiveBinding::Bind(const LiveStudio& studio) {
    fPlugged.clear();
    fIsComplete = true;
    fLacksObjects = false;
    fStatus = noErr;
    const std::vector<StoredObject*> devices = ObjectsOf(
        fStore, KnownAmong(fStore.Devices(), kMIDIObjectType_Device), RecordsOf(studio.devices));
    for (std::size_t i = 0; i < devices.size(); ++i)
        BindDevice(studio.devices[i], devices[i]);
    BindProgramEndpoints(studio, kMIDIObjectType_Source);
    BindProgramEndpoints(studio, kMIDIObjectType_Destination);
    return fIsComplete;
}

void LiveBinding::BindDevice(const LiveDevice& live, StoredObject* device) {
    if (!device)
        device = CreateDevice(live);
    if (!device)
        return;
    Follow(*device, live.record);
    fPlugged.push_back({device->ref, live.whereabouts});
    for (const LivePort& port : live.ports)
        BindPort(port, *device);
}

void LiveBinding::BindPort(const LivePort& live, StoredObject& device) {
    const HardwareRecord record = RecordOf(live);
    StoredObject* entity = FindPort(device, record.place);
    if (!entity) {
        entity = Create(kMIDIObjectType_Entity, &device, &record);
        if (!entity)
            return;
        SetText(*entity, kMIDIPropertyName, live.name);
    }
    Follow(*entity, record);
    fPlugged.push_back({entity->ref, live.whereabouts});
    if (live.isSource)
        BindPortEndpoint(*entity, kMIDIObjectType_Source);
    if (live.isDestination)
        BindPortEndpoint(*entity, kMIDIObjectType_Destination);
}

void LiveBinding::BindPortEndpoint(StoredObject& entity, MIDIObjectType type) {
    StoredObject* endpoint = FindEndpoint(entity, type);
    if (!endpoint)
        endpoint = Create(type, &entity, nullptr);
    if (endpoint)
        fPlugged.push_back({endpoint->ref, {}});
}

void LiveBinding::BindProgramEndpoints(const LiveStudio& studio, MIDIObjectType type) {
    std::vector<LiveEndpoint> live;
    std::copy_if(studio.endpoints.begin(), studio.endpoints.end(), std::back_inserter(live),
                 [type](const LiveEndpoint& endpoint) { return endpoint.type == type; });
    const std::vector<StoredObject*> objects =
        ObjectsOf(fStore, KnownAmong(fStore.VirtualEndpoints(), type), RecordsOf(live));
    for (std::size_t i = 0; i < objects.size(); ++i)
        BindProgramEndpoint(live[i], objects[i]);
}

void LiveBinding::BindProgramEndpoint(const LiveEndpoint& live, StoredObject* endpoint) {
    if (!endpoint) {
        endpoint = Create(live.type, nullptr, &live.record);
        if (!endpoint)
            return;
        SetText(*endpoint, kMIDIPropertyName, live.record.name);
    }
    fPlugged.push_back({endpoint->ref, live.whereabouts});
}

StoredObject* LiveBinding::CreateDevice(const LiveDevice& live) {
    StoredObject* const device = Create(kMIDIObjectType_Device, nullptr, &live.record);
    if (!device)
        return nullptr;
    SetText(*device, kMIDIPropertyName, DistinctDeviceName(live.record.name));
    SetText(*device, kMIDIPropertyManufacturer, live.record.manufacturer);
    SetText(*device, kMIDIPropertyModel, live.record.name);
    SetText(*device, kMIDIPropertyDriverOwner, live.driver);
    return device;
}

StoredObject* LiveBinding::Create(MIDIObjectType type, StoredObject* owner,
                                  const HardwareRecord* record) {
    fLacksObjects = true;
    if (!MayWrite())
        return nullptr;
    StoredObject* const object = fEditor->Create(type, owner, fStatus);
    if (object && record)
        fStatus = fEditor->SetHardware(*object, *record);
    return object;
}

void LiveBinding::Follow(StoredObject& object, const HardwareRecord& record) {
    const HardwareRecord last = *object.hardware;
    if (last == record || !MayWrite())
        return;
    const bool isDevice = IsDevice(object);
    FollowText(object, kMIDIPropertyManufacturer, last.manufacturer, record.manufacturer);
    FollowText(object, isDevice ? kMIDIPropertyModel : kMIDIPropertyName, last.name, record.name);
    if (isDevice)
        FollowName(object, last.name, record.name);
    fStatus = fEditor->SetHardware(object, record);
}

void LiveBinding::FollowText(StoredObject& object, CFStringRef key, const std::string& last,
                             const std::string& now) {
    const PropertyValue* const present = object.Own(fEditor->Keys().NumberOf(key));
    const bool isUnchanged =
        present ? *present == PropertyValue::OfString(last) : last.empty() && IsDevice(object);
    if (last != now && isUnchanged)
        SetText(object, key, now);
}

void LiveBinding::FollowName(StoredObject& device, const std::string& last,
                             const std::string& now) {
    const PropertyValue* const name = device.Own(fEditor->Keys().NumberOf(kMIDIPropertyName));
    if (last != now && name && IsDistinctNameOf(name->Bytes(), last))
        SetText(device, kMIDIPropertyName, DistinctDeviceName(now));
}

void LiveBinding::SetText(StoredObject& object, CFStringRef key, const std::string& text) {
    if (text.empty() || !MayWrite())
        return;
    fStatus =
        fEditor->SetProperty(object, fEditor->Keys().NumberOf(key), PropertyValue::OfString(text));
}

std::string LiveBinding::DistinctDeviceName(const std::string& name) const {
    const PropertyKey key = fEditor->Keys().NumberOf(kMIDIPropertyName);
    std::set<std::string, std::less<>> taken;
    for (const ObjectStore::List* const devices : {&fStore.Devices(), &fStore.ExternalDevices()}) {
        for (const StoredObject* const device : *devices) {
            if (const PropertyValue* const own = device->Own(key))
                taken.emplace(own->Bytes());
        }
    }
    return DistinctName(name,
                        [&taken](const std::string& wanted) { return taken.contains(wanted); });
}

bool LiveBinding::MayWrite() {
    fIsComplete = false;
    return fEditor && fStatus == noErr;
}

} // namespace KestrinMIDI
