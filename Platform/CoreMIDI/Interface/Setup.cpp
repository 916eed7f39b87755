#include "Platform/CoreFoundation/Text.h"
#include "Platform/CoreMIDI/Interface/Service.h"

#include <CoreMIDI/CoreMIDI.h>

#include <chrono>

using namespace KestrinMIDI;

namespace {

constexpr ItemCount kMostEndpoints = 256;

std::int64_t UnixTime() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

/// What becomes a ServiceSession::Change inside the session may lack the memory for it.
template <typename Changing>
OSStatus Change(const Changing& change) {
    return InSession(kMIDIUnknownError, [&](ServiceSession& session) {
        // Whether a device is plugged in now decides, not what the last enumeration saw.
        session.LookForNews();
        return session.Apply(change);
    });
}

/// Sets a text that may be null: then nothing is set.
OSStatus SetText(ObjectEditor& editor, StoredObject& object, CFStringRef key, CFStringRef text) {
    if (!text)
        return noErr;
    return editor.SetProperty(object, editor.Keys().NumberOf(key),
                              PropertyValue::OfString(Utf8Of(text)));
}

OSStatus CreateDevice(MIDIObjectType type, CFStringRef name, CFStringRef manufacturer,
                      CFStringRef model, MIDIDeviceRef* outDevice) {
    return Change([&](ObjectEditor& editor) {
        OSStatus status = noErr;
        StoredObject* const device = editor.Create(type, nullptr, status);
        if (status == noErr)
            status = editor.SetPending(*device, UnixTime());
        if (status == noErr)
            status = SetText(editor, *device, kMIDIPropertyName, name);
        if (status == noErr)
            status = SetText(editor, *device, kMIDIPropertyManufacturer, manufacturer);
        if (status == noErr)
            status = SetText(editor, *device, kMIDIPropertyModel, model);
        if (status == noErr && outDevice)
            *outDevice = device->ref;
        return status;
    });
}

OSStatus AddToSetup(MIDIDeviceRef ref, MIDIObjectType type) {
    return Change([&](ObjectEditor& editor) -> OSStatus {
        StoredObject* const device = editor.Store().Find(ref);
        if (!device || device->type != type)
            return kMIDIObjectNotFound;
        return device->pendingSince ? editor.SetPending(*device, std::nullopt) : OSStatus(noErr);
    });
}

OSStatus RemoveFromSetup(MIDIDeviceRef ref, MIDIObjectType type) {
    return Change([&](ObjectEditor& editor) -> OSStatus {
        StoredObject* const device = editor.Store().Find(ref);
        if (!device || device->type != type)
            return kMIDIObjectNotFound;
        if (device->hardware && device->isPlugged)
            return kMIDINotPermitted;
        return editor.Remove(*device);
    });
}

OSStatus CreateEndpoints(ObjectEditor& editor, StoredObject& entity, MIDIObjectType type,
                         ItemCount count) {
    OSStatus status = noErr;
    for (ItemCount i = 0; i < count && status == noErr; ++i)
        editor.Create(type | (entity.type & kMIDIObjectType_ExternalMask), &entity, status);
    return status;
}

struct NewEntity {
    CFStringRef name;
    bool isEmbedded;
    ItemCount sources;
    ItemCount destinations;
};

OSStatus CreateEntity(ObjectEditor& editor, StoredObject& device, const NewEntity& wanted,
                      MIDIEntityRef* outEntity) {
    OSStatus status = noErr;
    const MIDIObjectType type =
        kMIDIObjectType_Entity | (device.type & kMIDIObjectType_ExternalMask);
    StoredObject* const entity = editor.Create(type, &device, status);
    if (status == noErr)
        status = SetText(editor, *entity, kMIDIPropertyName, wanted.name);
    if (status == noErr)
        status = editor.SetProperty(*entity, editor.Keys().NumberOf(kMIDIPropertyIsEmbeddedEntity),
                                    PropertyValue::OfInteger(wanted.isEmbedded ? 1 : 0));
    if (status == noErr)
        status = CreateEndpoints(editor, *entity, kMIDIObjectType_Source, wanted.sources);
    if (status == noErr)
        status = CreateEndpoints(editor, *entity, kMIDIObjectType_Destination, wanted.destinations);
    if (status == noErr && outEntity)
        *outEntity = entity->ref;
    return status;
}

} // namespace

OSStatus MIDIExternalDeviceCreate(CFStringRef name, CFStringRef manufacturer, CFStringRef model,
                                  MIDIDeviceRef* outDevice) {
    return CreateDevice(kMIDIObjectType_ExternalDevice, name, manufacturer, model, outDevice);
}

OSStatus MIDISetupAddExternalDevice(MIDIDeviceRef device) {
    return AddToSetup(device, kMIDIObjectType_ExternalDevice);
}

OSStatus MIDISetupRemoveExternalDevice(MIDIDeviceRef device) {
    return RemoveFromSetup(device, kMIDIObjectType_ExternalDevice);
}

OSStatus MIDIDeviceCreate(MIDIDriverRef, CFStringRef name, CFStringRef manufacturer,
                          CFStringRef model, MIDIDeviceRef* outDevice) {
    return CreateDevice(kMIDIObjectType_Device, name, manufacturer, model, outDevice);
}

OSStatus MIDISetupAddDevice(MIDIDeviceRef device) {
    return AddToSetup(device, kMIDIObjectType_Device);
}

OSStatus MIDISetupRemoveDevice(MIDIDeviceRef device) {
    return RemoveFromSetup(device, kMIDIObjectType_Device);
}

OSStatus MIDIDeviceAddEntity(MIDIDeviceRef device, CFStringRef name, Boolean embedded,
                             ItemCount numSourceEndpoints, ItemCount numDestinationEndpoints,
                             MIDIEntityRef* newEntity) {
    if (numSourceEndpoints > kMostEndpoints || numDestinationEndpoints > kMostEndpoints)
        return kMIDINotPermitted;
    const NewEntity wanted{name, embedded != 0, numSourceEndpoints, numDestinationEndpoints};
    return Change([&](ObjectEditor& editor) -> OSStatus {
        StoredObject* const owner = editor.Store().Find(device);
        if (!owner || !IsDevice(*owner))
            return kMIDIObjectNotFound;
        return CreateEntity(editor, *owner, wanted, newEntity);
    });
}

OSStatus MIDIDeviceRemoveEntity(MIDIDeviceRef device, MIDIEntityRef entity) {
    return Change([&](ObjectEditor& editor) -> OSStatus {
        StoredObject* const object = editor.Store().Find(entity);
        if (!object || !IsEntity(*object) || object->owner->ref != device)
            return kMIDIObjectNotFound;
        return object->isPlugged ? OSStatus(kMIDINotPermitted) : editor.Remove(*object);
    });
}

OSStatus MIDIRestart(void) {
    return Guarded(kMIDIUnknownError, [] {
        Service::Instance().Close();
        return noErr;
    });
}
