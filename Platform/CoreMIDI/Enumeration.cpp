#include "Platform/CoreMIDI/Service.h"

#include <CoreMIDI/MIDIDatabase.h>

namespace {

using List = ObjectStore::List;

/// A number is asked for before a list is walked: the moment to look for what was plugged in.
ItemCount NumberOf(const List& (ObjectStore::*list)() const) {
    ServiceSession session;
    session.LookForNews();
    return (session.Store().*list)().size();
}

MIDIObjectRef MemberOf(const List& (ObjectStore::*list)() const, ItemCount index) {
    const ServiceSession session;
    const List& members = (session.Store().*list)();
    return index < members.size() ? members[index]->ref : 0;
}

bool IsAny(const StoredObject&) {
    return true;
}

bool IsSource(const StoredObject& object) {
    return (object.type & ~kMIDIObjectType_ExternalMask) == kMIDIObjectType_Source;
}

bool IsDestination(const StoredObject& object) {
    return (object.type & ~kMIDIObjectType_ExternalMask) == kMIDIObjectType_Destination;
}

using Filter = bool (*)(const StoredObject&);

ItemCount NumberOfChildren(MIDIObjectRef owner, Filter ownerFilter, Filter filter) {
    const ServiceSession session;
    const StoredObject* const object = session.Store().Find(owner);
    if (!object || !ownerFilter(*object))
        return 0;
    ItemCount count = 0;
    for (const StoredObject* const child : object->children)
        count += filter(*child) ? 1 : 0;
    return count;
}

MIDIObjectRef Child(MIDIObjectRef owner, Filter ownerFilter, Filter filter, ItemCount index) {
    const ServiceSession session;
    const StoredObject* const object = session.Store().Find(owner);
    if (!object || !ownerFilter(*object))
        return 0;
    for (const StoredObject* const child : object->children) {
        if (filter(*child) && index-- == 0)
            return child->ref;
    }
    return 0;
}

OSStatus OwnerOf(MIDIObjectRef ref, Filter filter, MIDIObjectRef* outOwner) {
    const ServiceSession session;
    const StoredObject* const object = session.Store().Find(ref);
    if (!object || !filter(*object) || !object->owner)
        return kMIDIObjectNotFound;
    if (outOwner)
        *outOwner = object->owner->ref;
    return noErr;
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
    return NumberOfChildren(device, IsDevice, IsAny);
}

MIDIEntityRef MIDIDeviceGetEntity(MIDIDeviceRef device, ItemCount entityIndex0) {
    return Child(device, IsDevice, IsAny, entityIndex0);
}

ItemCount MIDIEntityGetNumberOfSources(MIDIEntityRef entity) {
    return NumberOfChildren(entity, IsEntity, IsSource);
}

MIDIEndpointRef MIDIEntityGetSource(MIDIEntityRef entity, ItemCount sourceIndex0) {
    return Child(entity, IsEntity, IsSource, sourceIndex0);
}

ItemCount MIDIEntityGetNumberOfDestinations(MIDIEntityRef entity) {
    return NumberOfChildren(entity, IsEntity, IsDestination);
}

MIDIEndpointRef MIDIEntityGetDestination(MIDIEntityRef entity, ItemCount destIndex0) {
    return Child(entity, IsEntity, IsDestination, destIndex0);
}

OSStatus MIDIEndpointGetEntity(MIDIEndpointRef endpoint, MIDIEntityRef* outEntity) {
    return OwnerOf(endpoint, IsEndpoint, outEntity);
}

OSStatus MIDIEntityGetDevice(MIDIEntityRef entity, MIDIDeviceRef* outDevice) {
    return OwnerOf(entity, IsEntity, outDevice);
}

OSStatus MIDIObjectFindByUniqueID(MIDIUniqueID uniqueID, MIDIObjectRef* outObject,
                                  MIDIObjectType* outObjectType) {
    const ServiceSession session;
    const StoredObject* const object = session.Store().FindByUniqueID(uniqueID);
    if (!object)
        return kMIDIObjectNotFound;
    if (outObject)
        *outObject = object->ref;
    if (outObjectType)
        *outObjectType = object->type;
    return noErr;
}

ItemCount KestrinMIDIGetNumberOfVirtualEndpoints(void) {
    return NumberOf(&ObjectStore::VirtualEndpoints);
}

MIDIEndpointRef KestrinMIDIGetVirtualEndpoint(ItemCount index0) {
    return MemberOf(&ObjectStore::VirtualEndpoints, index0);
}
