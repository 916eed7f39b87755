#include "Platform/CoreMIDI/Interface/Service.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <algorithm>
#include <utility>

using namespace KestrinMIDI;

namespace {

using List = ObjectStore::List;

/// A number is asked for before a list is walked: the moment to look for what was plugged in.
ItemCount NumberOf(const List& (ObjectStore::*list)() const) {
    return InSession(0, [&](ServiceSession& session) {
        session.LookForNews();
        return ItemCount((session.Store().*list)().size());
    });
}

MIDIObjectRef MemberOf(const List& (ObjectStore::*list)() const, ItemCount index) {
    return InSession(0, [&](ServiceSession& session) {
        const List& members = (session.Store().*list)();
        return index < members.size() ? members[index]->ref : 0;
    });
}

using Filter = bool (*)(const StoredObject&);
using Children = std::vector<StoredObject*>;

/// The owner's children of one type; children stand ordered by their types.
std::pair<Children::const_iterator, Children::const_iterator> ChildrenOf(const StoredObject& owner,
                                                                         MIDIObjectType plainType) {
    const MIDIObjectType type = plainType | (owner.type & kMIDIObjectType_ExternalMask);
    const Children& all = owner.children;
    const auto begin = std::partition_point(
        all.begin(), all.end(), [type](const StoredObject* child) { return child->type < type; });
    const auto end = std::partition_point(
        begin, all.end(), [type](const StoredObject* child) { return child->type == type; });
    return {begin, end};
}

ItemCount NumberOfChildren(MIDIObjectRef owner, Filter ownerFilter, MIDIObjectType type) {
    return InSession(0, [&](ServiceSession& session) -> ItemCount {
        const StoredObject* const object = session.Store().Find(owner);
        if (!object || !ownerFilter(*object))
            return 0;
        const auto [begin, end] = ChildrenOf(*object, type);
        return static_cast<ItemCount>(end - begin);
    });
}

MIDIObjectRef Child(MIDIObjectRef owner, Filter ownerFilter, MIDIObjectType type, ItemCount index) {
    return InSession(0, [&](ServiceSession& session) -> MIDIObjectRef {
        const StoredObject* const object = session.Store().Find(owner);
        if (!object || !ownerFilter(*object))
            return 0;
        const auto [begin, end] = ChildrenOf(*object, type);
        return index < static_cast<ItemCount>(end - begin)
                   ? begin[static_cast<std::ptrdiff_t>(index)]->ref
                   : 0;
    });
}

OSStatus OwnerOf(MIDIObjectRef ref, Filter filter, MIDIObjectRef* outOwner) {
    return InSession(kMIDIUnknownError, [&](ServiceSession& session) -> OSStatus {
        const StoredObject* const object = session.Store().Find(ref);
        if (!object || !filter(*object) || !object->owner)
            return kMIDIObjectNotFound;
        if (outOwner)
            *outOwner = object->owner->ref;
        return noErr;
    });
}

} // namespace

ItemCount MIDIGetNumberOfSources(void) {
    return NumberOf(&ObjectStore::Sources);
}

MIDIEndpointRef MIDIGetSource(ItemCount sourceIndex0) {
    return MemberOf(&ObjectStore::Sources, sourceIndex0);
}

ItemCount MIDIGetNumberOfDestinations(void) {
    return NumberOf(&ObjectStore::Destinations);
}

MIDIEndpointRef MIDIGetDestination(ItemCount destIndex0) {
    return MemberOf(&ObjectStore::Destinations, destIndex0);
}

ItemCount MIDIGetNumberOfDevices(void) {
    return NumberOf(&ObjectStore::Devices);
}

MIDIDeviceRef MIDIGetDevice(ItemCount deviceIndex0) {
    return MemberOf(&ObjectStore::Devices, deviceIndex0);
}

ItemCount MIDIGetNumberOfExternalDevices(void) {
    return NumberOf(&ObjectStore::ExternalDevices);
}

MIDIDeviceRef MIDIGetExternalDevice(ItemCount deviceIndex0) {
    return MemberOf(&ObjectStore::ExternalDevices, deviceIndex0);
}

ItemCount MIDIDeviceGetNumberOfEntities(MIDIDeviceRef device) {
    return NumberOfChildren(device, IsDevice, kMIDIObjectType_Entity);
}

MIDIEntityRef MIDIDeviceGetEntity(MIDIDeviceRef device, ItemCount entityIndex0) {
    return Child(device, IsDevice, kMIDIObjectType_Entity, entityIndex0);
}

ItemCount MIDIEntityGetNumberOfSources(MIDIEntityRef entity) {
    return NumberOfChildren(entity, IsEntity, kMIDIObjectType_Source);
}

MIDIEndpointRef MIDIEntityGetSource(MIDIEntityRef entity, ItemCount sourceIndex0) {
    return Child(entity, IsEntity, kMIDIObjectType_Source, sourceIndex0);
}

ItemCount MIDIEntityGetNumberOfDestinations(MIDIEntityRef entity) {
    return NumberOfChildren(entity, IsEntity, kMIDIObjectType_Destination);
}

MIDIEndpointRef MIDIEntityGetDestination(MIDIEntityRef entity, ItemCount destIndex0) {
    return Child(entity, IsEntity, kMIDIObjectType_Destination, destIndex0);
}

OSStatus MIDIEndpointGetEntity(MIDIEndpointRef endpoint, MIDIEntityRef* outEntity) {
    return OwnerOf(endpoint, IsEndpoint, outEntity);
}

OSStatus MIDIEntityGetDevice(MIDIEntityRef entity, MIDIDeviceRef* outDevice) {
    return OwnerOf(entity, IsEntity, outDevice);
}

OSStatus MIDIObjectFindByUniqueID(MIDIUniqueID uniqueID, MIDIObjectRef* outObject,
                                  MIDIObjectType* outObjectType) {
    return InSession(kMIDIUnknownError, [&](ServiceSession& session) -> OSStatus {
        const StoredObject* const object = session.Store().FindByUniqueID(uniqueID);
        if (!object)
            return kMIDIObjectNotFound;
        if (outObject)
            *outObject = object->ref;
        if (outObjectType)
            *outObjectType = object->type;
        return noErr;
    });
}

ItemCount KestrinMIDIGetNumberOfVirtualEndpoints(void) {
    return NumberOf(&ObjectStore::VirtualEndpoints);
}

MIDIEndpointRef KestrinMIDIGetVirtualEndpoint(ItemCount index0) {
    return MemberOf(&ObjectStore::VirtualEndpoints, index0);
}

Boolean KestrinMIDIDeviceHasSerial(MIDIDeviceRef device) {
    return InSession(0, [&](ServiceSession& session) -> Boolean {
        const StoredObject* const object = session.Store().Find(device);
        return object && object->hardware && !object->hardware->serial.empty();
    });
}
