#include "Platform/CoreMIDI/Store/ObjectStore.h"

#include "Platform/CoreFoundation/Text.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace KestrinMIDI {

CFTypeRef PropertyValue::MakeObject() const {
    if (fKind == Kind::String)
        return MakeString(fBytes);
    return MakeData(fBytes);
}

const PropertyValue* StoredObject::Own(PropertyKey key) const {
    for (const StoredProperty& property : KeyTable::IsLive(key) ? live : properties) {
        if (property.key == key)
            return &property.value;
    }
    return nullptr;
}

const PropertyValue* StoredObject::Inherited(PropertyKey key) const {
    for (const StoredObject* object = this; object; object = object->owner) {
        if (const PropertyValue* const value = object->Own(key))
            return value;
    }
    return nullptr;
}

const StoredObject& StoredObject::Root() const {
    const StoredObject* object = this;
    while (object->owner)
        object = object->owner;
    return *object;
}

bool StoredObject::IsPresent() const {
    const StoredObject& root = Root();
    if (root.pendingSince || (root.hardware && !root.isPlugged))
        return false;
    // A plugged unit may have fewer ports than it had; what a person added to it has no record.
    const StoredObject* const port = IsEndpoint(*this) && owner ? owner : this;
    return !port->hardware || isPlugged;
}

bool IsDevice(const StoredObject& object) {
    return (object.type & ~kMIDIObjectType_ExternalMask) == kMIDIObjectType_Device;
}

bool IsEntity(const StoredObject& object) {
    return (object.type & ~kMIDIObjectType_ExternalMask) == kMIDIObjectType_Entity;
}

bool IsEndpoint(const StoredObject& object) {
    const MIDIObjectType type = object.type & ~kMIDIObjectType_ExternalMask;
    return type == kMIDIObjectType_Source || type == kMIDIObjectType_Destination;
}

bool IsExternal(const StoredObject& object) {
    return (object.type & kMIDIObjectType_ExternalMask) != 0;
}

bool HasDriver(const StoredObject& object) {
    return object.Root().hardware != nullptr;
}

KeyTable::KeyTable() {
    for (const CFStringRef key :
         {kMIDIPropertyUniqueID, kMIDIPropertyOffline, kKestrinMIDIPropertySequencerClient,
          kKestrinMIDIPropertySequencerPort, kKestrinMIDIPropertyCard, kKestrinMIDIPropertyCardID,
          kKestrinMIDIPropertyRawMIDI, kKestrinMIDIPropertyUSBPath, kKestrinMIDIPropertyUSBSerial,
          kKestrinMIDIPropertyUSBVendorProduct})
        NumberOf(key);
}

PropertyKey KeyTable::NumberOf(std::string_view key) {
    if (const auto found = fNumbers.find(key); found != fNumbers.end())
        return found->second;
    const auto number = static_cast<PropertyKey>(fTexts.size());
    fTexts.push_back(nullptr); // first: where memory ends, no two keys get one number
    fTexts.back() = &fNumbers.emplace(std::string(key), number).first->first;
    return number;
}

PropertyKey KeyTable::NumberOf(CFStringRef key) {
    return NumberOf(Utf8Of(key));
}

StoredObject* ObjectStore::Find(MIDIObjectRef ref) const {
    const auto found = fObjects.find(ref);
    return found == fObjects.end() ? nullptr : found->second.get();
}

StoredObject* ObjectStore::FindByUniqueID(MIDIUniqueID uniqueID) const {
    const auto found = fByUniqueID.find(uniqueID);
    return found == fByUniqueID.end() ? nullptr : found->second;
}

void ObjectStore::ForEach(const std::function<void(const StoredObject&)>& visit) const {
    for (const auto& [ref, object] : fObjects)
        visit(*object);
}

bool ObjectStore::Insert(std::unique_ptr<StoredObject> object) {
    const bool makesSense = object->ref != 0 && object->uniqueID != kMIDIInvalidUniqueID &&
                            (IsDevice(*object) || IsEntity(*object) || IsEndpoint(*object));
    if (!makesSense || Find(object->ref) || FindByUniqueID(object->uniqueID))
        return false;
    fByUniqueID.emplace(object->uniqueID, object.get());
    const MIDIObjectRef ref = object->ref;
    fObjects.emplace_hint(fObjects.end(), ref, std::move(object));
    return true;
}

namespace {

/// Devices stand alone, entities belong to a device and endpoints to an entity of the same kind; a
/// program's endpoint belongs to none. So no chain of owners is longer than three.
bool MayOwn(const StoredObject* owner, const StoredObject& object) {
    if (!owner)
        return object.ownerRef == 0 &&
               (IsDevice(object) || (IsEndpoint(object) && !IsExternal(object)));
    return IsExternal(*owner) == IsExternal(object) &&
           ((IsDevice(*owner) && IsEntity(object)) || (IsEntity(*owner) && IsEndpoint(object)));
}

bool ComesBefore(const StoredObject* one, const StoredObject* other) {
    return std::tie(one->type, one->position, one->ref) <
           std::tie(other->type, other->position, other->ref);
}

} // namespace

bool ObjectStore::LinkToOwner(StoredObject& object) {
    StoredObject* const owner = object.ownerRef ? Find(object.ownerRef) : nullptr;
    if (!MayOwn(owner, object))
        return false;
    object.owner = owner;
    if (owner)
        owner->children.push_back(&object);
    return true;
}

std::size_t ObjectStore::LinkAll() {
    std::vector<MIDIObjectRef> orphans;
    for (const auto& [ref, object] : fObjects) {
        if (!LinkToOwner(*object))
            orphans.push_back(ref);
    }
    const std::size_t before = fObjects.size();
    for (const MIDIObjectRef ref : orphans)
        Remove(ref);
    for (const auto& [ref, object] : fObjects)
        std::sort(object->children.begin(), object->children.end(), ComesBefore);
    return before - fObjects.size();
}

StoredObject* ObjectStore::Add(std::unique_ptr<StoredObject> object) {
    const MIDIObjectRef ref = object->ref;
    Insert(std::move(object));
    StoredObject* const added = Find(ref);
    if (added && LinkToOwner(*added) && added->owner)
        std::sort(added->owner->children.begin(), added->owner->children.end(), ComesBefore);
    fLists.reset();
    return added;
}

void ObjectStore::Remove(MIDIObjectRef ref) {
    StoredObject* const object = Find(ref);
    if (!object)
        return;
    fLists.reset();
    if (object->owner)
        std::erase(object->owner->children, object);
    const std::vector<StoredObject*> children = std::move(object->children);
    for (StoredObject* const child : children) {
        child->owner = nullptr;
        Remove(child->ref);
    }
    fByUniqueID.erase(object->uniqueID);
    fObjects.erase(ref);
}

void ObjectStore::SetProperty(StoredObject& object, PropertyKey key, PropertyValue value) {
    for (StoredProperty& property : object.properties) {
        if (property.key == key) {
            property.value = std::move(value);
            return;
        }
    }
    object.properties.push_back({key, std::move(value)});
    object.listedKeys.clear();
}

bool ObjectStore::RemoveProperty(StoredObject& object, PropertyKey key) {
    object.listedKeys.clear();
    return std::erase_if(object.properties,
                         [key](const StoredProperty& property) { return property.key == key; }) > 0;
}

void ObjectStore::SetUniqueID(StoredObject& object, MIDIUniqueID uniqueID) {
    fByUniqueID.erase(object.uniqueID);
    object.uniqueID = uniqueID;
    fByUniqueID.emplace(uniqueID, &object);
}

void ObjectStore::SetPending(StoredObject& object, std::optional<std::int64_t> since) {
    object.pendingSince = since;
    fLists.reset();
}

void ObjectStore::SetPlugged(const std::vector<PluggedObject>& plugged) {
    for (const auto& [ref, object] : fObjects) {
        object->isPlugged = false;
        object->live.clear();
    }
    for (const auto& [ref, live] : plugged) {
        if (StoredObject* const object = Find(ref)) {
            object->isPlugged = true;
            object->live = live;
        }
    }
    fLists.reset();
}

namespace {

void ListEndpoint(ObjectStore::List& sources, ObjectStore::List& destinations,
                  const StoredObject& endpoint) {
    if (endpoint.IsPresent())
        (endpoint.type == kMIDIObjectType_Source ? sources : destinations).push_back(&endpoint);
}

} // namespace

void ObjectStore::ListObject(AllLists& lists, const StoredObject& object) const {
    if (IsEndpoint(object))
        lists.virtualEndpoints.push_back(&object);
    else if (object.pendingSince)
        lists.pendingDevices.push_back(&object);
    else
        (IsExternal(object) ? lists.externalDevices : lists.devices).push_back(&object);
}

const ObjectStore::AllLists& ObjectStore::Lists() const {
    if (fLists)
        return *fLists;
    auto lists = std::make_unique<AllLists>();
    List roots;
    for (const auto& [ref, object] : fObjects) {
        if (!object->owner)
            roots.push_back(object.get());
    }
    std::sort(roots.begin(), roots.end(), ComesBefore);
    for (const StoredObject* const root : roots)
        ListObject(*lists, *root);
    for (const StoredObject* const device : lists->devices) {
        for (const StoredObject* const entity : device->children) {
            for (const StoredObject* const endpoint : entity->children)
                ListEndpoint(lists->sources, lists->destinations, *endpoint);
        }
    }
    for (const StoredObject* const endpoint : lists->virtualEndpoints)
        ListEndpoint(lists->sources, lists->destinations, *endpoint);
    fLists = std::move(lists);
    return *fLists;
}

} // namespace KestrinMIDI
