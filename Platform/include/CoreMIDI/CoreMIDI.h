#pragma once

// The part of CoreMIDI that the system and its tools use, with the meaning of its public
// documentation. Plain C, so that programs in either language can include it.
//
// The objects and their properties stand in one database file per user, which every program that
// links this library shares. A reference names an object for as long as that object lives, in every
// process. What another process changes is seen at the next call.
//
// The devices that are plugged in now are taken from the system's sequencer in one go: at the first
// call, and again when a number of objects is asked for (MIDIGetNumberOf…) and something was
// plugged or unplugged since. A loop from 0 to such a number thus walks one unchanging list.
//
// Where the database can't be opened, reading answers as if it were empty and writing fails with
// kMIDIServerStartErr; <CoreMIDI/MIDIDatabase.h> tells why, and has the statuses of writing that
// fails later, and a way to store several changes together. The functions may be called from any
// thread, one after the other. A child made by fork without exec has no access.

#include <CoreFoundation/CoreFoundation.h>

#include <stddef.h>

CF_EXTERN_C_BEGIN

typedef unsigned long ItemCount;

// Objects

typedef UInt32 MIDIObjectRef;
typedef MIDIObjectRef MIDIDeviceRef;
typedef MIDIObjectRef MIDIEntityRef;
typedef MIDIObjectRef MIDIEndpointRef;

/// An object's identity: given once and kept for good, also while a device is unplugged.
typedef SInt32 MIDIUniqueID;
enum { kMIDIInvalidUniqueID = 0 };

typedef SInt32 MIDIObjectType;
enum {
    kMIDIObjectType_Other = -1,
    kMIDIObjectType_Device = 0,
    kMIDIObjectType_Entity = 1,
    kMIDIObjectType_Source = 2,
    kMIDIObjectType_Destination = 3,
    kMIDIObjectType_ExternalMask = 0x10,
    kMIDIObjectType_ExternalDevice = kMIDIObjectType_ExternalMask | kMIDIObjectType_Device,
    kMIDIObjectType_ExternalEntity = kMIDIObjectType_ExternalMask | kMIDIObjectType_Entity,
    kMIDIObjectType_ExternalSource = kMIDIObjectType_ExternalMask | kMIDIObjectType_Source,
    kMIDIObjectType_ExternalDestination = kMIDIObjectType_ExternalMask | kMIDIObjectType_Destination
};

/// A driver's interface, as plug-ins have it; there are none here and null stands in its place.
typedef struct MIDIDriverInterface** MIDIDriverRef;

// Statuses; 0 is success.

enum {
    kMIDIInvalidClient = -10830,
    kMIDIInvalidPort = -10831,
    kMIDIWrongEndpointType = -10832,
    kMIDINoConnection = -10833,
    kMIDIUnknownEndpoint = -10834,
    kMIDIUnknownProperty = -10835,
    kMIDIWrongPropertyType = -10836,
    kMIDINoCurrentSetup = -10837,
    kMIDIMessageSendErr = -10838,
    kMIDIServerStartErr = -10839,
    kMIDISetupFormatErr = -10840,
    kMIDIWrongThread = -10841,
    kMIDIObjectNotFound = -10842,
    kMIDIIDNotUnique = -10843,
    kMIDINotPermitted = -10844,
    kMIDIUnknownError = -10845
};

// Property keys. Any other text may serve as a key too.

extern const CFStringRef kMIDIPropertyName;         ///< "name", string
extern const CFStringRef kMIDIPropertyManufacturer; ///< "manufacturer", string
extern const CFStringRef kMIDIPropertyModel;        ///< "model", string
extern const CFStringRef kMIDIPropertyUniqueID;     ///< "uniqueID", integer, never inherited
extern const CFStringRef kMIDIPropertyDeviceID;     ///< "deviceID", integer
extern const CFStringRef
    kMIDIPropertyConnectionUniqueID;                    ///< "connUniqueID": one unique ID, or data
                                                        ///< holding several, in host byte order
extern const CFStringRef kMIDIPropertyOffline;          ///< "offline", integer: 1 while unplugged
extern const CFStringRef kMIDIPropertyPrivate;          ///< "private", integer
extern const CFStringRef kMIDIPropertyDriverOwner;      ///< "driver", string
extern const CFStringRef kMIDIPropertyIsEmbeddedEntity; ///< "embedded", integer

// Enumerating. An index out of range and an unknown owner answer 0.
//
// Sources and destinations are those present now: of plugged devices, of interfaces that a person
// added, of programs; never those of external devices. Devices are all that are known, also the
// unplugged ones (their kMIDIPropertyOffline is 1), in the order in which they were first met.

ItemCount MIDIGetNumberOfSources(void);
MIDIEndpointRef MIDIGetSource(ItemCount sourceIndex0);
ItemCount MIDIGetNumberOfDestinations(void);
MIDIEndpointRef MIDIGetDestination(ItemCount destIndex0);
ItemCount MIDIGetNumberOfDevices(void);
MIDIDeviceRef MIDIGetDevice(ItemCount deviceIndex0);
ItemCount MIDIGetNumberOfExternalDevices(void);
MIDIDeviceRef MIDIGetExternalDevice(ItemCount deviceIndex0);

ItemCount MIDIDeviceGetNumberOfEntities(MIDIDeviceRef device);
MIDIEntityRef MIDIDeviceGetEntity(MIDIDeviceRef device, ItemCount entityIndex0);
ItemCount MIDIEntityGetNumberOfSources(MIDIEntityRef entity);
MIDIEndpointRef MIDIEntityGetSource(MIDIEntityRef entity, ItemCount sourceIndex0);
ItemCount MIDIEntityGetNumberOfDestinations(MIDIEntityRef entity);
MIDIEndpointRef MIDIEntityGetDestination(MIDIEntityRef entity, ItemCount destIndex0);

/// The owners. kMIDIObjectNotFound where there is none, as for a program's own endpoints.
OSStatus MIDIEndpointGetEntity(MIDIEndpointRef endpoint, MIDIEntityRef* outEntity);
OSStatus MIDIEntityGetDevice(MIDIEntityRef entity, MIDIDeviceRef* outDevice);

/// Finds an object of any type, plugged in or not. kMIDIObjectNotFound if there is none. Either
/// result pointer may be null.
OSStatus MIDIObjectFindByUniqueID(MIDIUniqueID uniqueID, MIDIObjectRef* outObject,
                                  MIDIObjectType* outObjectType);

// Properties. An object without a property answers with its owner's: an endpoint with its entity's,
// an entity with its device's. kMIDIUnknownProperty: none of them has it; kMIDIWrongPropertyType:
// it is there, with a value of another type; kMIDIObjectNotFound: no such object.

OSStatus MIDIObjectGetIntegerProperty(MIDIObjectRef object, CFStringRef propertyID,
                                      SInt32* outValue);
/// The caller releases the result.
OSStatus MIDIObjectGetStringProperty(MIDIObjectRef object, CFStringRef propertyID,
                                     CFStringRef* outString);
/// The caller releases the result.
OSStatus MIDIObjectGetDataProperty(MIDIObjectRef object, CFStringRef propertyID,
                                   CFDataRef* outData);

// Changing a property replaces it, whatever its type was. It is kept for good when the call
// returns. kMIDIPropertyUniqueID can be set to an integer that no other object has (else
// kMIDIIDNotUnique) and not be removed; kMIDIPropertyOffline of a driver's device is not for
// setting (kMIDINotPermitted). An ID, a string or data of more than 1 MiB is refused with
// kMIDINotPermitted.

OSStatus MIDIObjectSetIntegerProperty(MIDIObjectRef object, CFStringRef propertyID, SInt32 value);
OSStatus MIDIObjectSetStringProperty(MIDIObjectRef object, CFStringRef propertyID,
                                     CFStringRef string);
OSStatus MIDIObjectSetDataProperty(MIDIObjectRef object, CFStringRef propertyID, CFDataRef data);
/// Removes the object's own property; kMIDIUnknownProperty if it has none of its own.
OSStatus MIDIObjectRemoveProperty(MIDIObjectRef object, CFStringRef propertyID);

// Building. A created device is enumerated from the moment that it is added; one that is never
// added is forgotten after a day.

/// Makes an external device: one that is cabled to an interface. Each text may be null.
OSStatus MIDIExternalDeviceCreate(CFStringRef name, CFStringRef manufacturer, CFStringRef model,
                                  MIDIDeviceRef* outDevice);
OSStatus MIDISetupAddExternalDevice(MIDIDeviceRef device);
/// Forgets the device with its entities and endpoints and all their properties.
OSStatus MIDISetupRemoveExternalDevice(MIDIDeviceRef device);

/// Makes an interface that has no driver. `owner` is null; each text may be null.
OSStatus MIDIDeviceCreate(MIDIDriverRef owner, CFStringRef name, CFStringRef manufacturer,
                          CFStringRef model, MIDIDeviceRef* outDevice);
OSStatus MIDISetupAddDevice(MIDIDeviceRef device);
/// Forgets the device as MIDISetupRemoveExternalDevice does. kMIDINotPermitted while it is plugged
/// in.
OSStatus MIDISetupRemoveDevice(MIDIDeviceRef device);

/// Adds an entity with sources and destinations (at most 256 of each, else kMIDINotPermitted). Its
/// endpoints have no names of their own and answer with the entity's.
OSStatus MIDIDeviceAddEntity(MIDIDeviceRef device, CFStringRef name, Boolean embedded,
                             ItemCount numSourceEndpoints, ItemCount numDestinationEndpoints,
                             MIDIEntityRef* newEntity);
OSStatus MIDIDeviceRemoveEntity(MIDIDeviceRef device, MIDIEntityRef entity);

// Being told of changes
//
// A client is told what changed in the setup, by whichever process: objects added and removed, and
// properties that an object has of its own, those included that are not stored. Plugging a known
// device in or out changes kMIDIPropertyOffline and the live properties of
// <CoreMIDI/MIDIDatabase.h> of each of its objects; one that is new is added. After the messages on
// what changed together comes kMIDIMsgSetupChanged. Of changes in quick succession the last state
// is told; what was there only in between may be passed over. While the database can't be used the
// setup counts as unchanged; kMIDIMsgSetupChanged tells of that state's beginning and end.
//
// Nothing is told by itself: KestrinMIDIClientDeliver of <CoreMIDI/MIDIDatabase.h> tells it, on the
// thread that calls it.

typedef MIDIObjectRef MIDIClientRef;

typedef SInt32 MIDINotificationMessageID;
enum {
    kMIDIMsgSetupChanged = 1,
    kMIDIMsgObjectAdded = 2,
    kMIDIMsgObjectRemoved = 3,
    kMIDIMsgPropertyChanged = 4
};

/// What every message begins with; kMIDIMsgSetupChanged is no more than that.
typedef struct MIDINotification {
    MIDINotificationMessageID messageID;
    UInt32 messageSize; ///< bytes of the whole message
} MIDINotification;

/// An owner is added before what it owns and removed after it. `parent` is 0 where there is none.
typedef struct MIDIObjectAddRemoveNotification {
    MIDINotificationMessageID messageID;
    UInt32 messageSize;
    MIDIObjectRef parent;
    MIDIObjectType parentType;
    MIDIObjectRef child;
    MIDIObjectType childType;
} MIDIObjectAddRemoveNotification;

typedef struct MIDIObjectPropertyChangeNotification {
    MIDINotificationMessageID messageID;
    UInt32 messageSize;
    MIDIObjectRef object;
    MIDIObjectType objectType;
    CFStringRef propertyName; ///< set, changed or removed; not the procedure's to release
} MIDIObjectPropertyChangeNotification;

/// Gets one message, valid until it returns. It may call any function, also dispose of its client.
typedef void (*MIDINotifyProc)(const MIDINotification* message, void* refCon);

/// Tells of what changes from now on. `name` and `notifyProc` may be null.
OSStatus MIDIClientCreate(CFStringRef name, MIDINotifyProc notifyProc, void* notifyRefCon,
                          MIDIClientRef* outClient);
/// Ends the client and closes its descriptor; nothing more is told. kMIDIInvalidClient if there is
/// none.
OSStatus MIDIClientDispose(MIDIClientRef client);

/// Closes the database as a clean exit does, changes that were begun being abandoned; the next call
/// opens it anew and takes the plugged devices anew.
OSStatus MIDIRestart(void);

CF_EXTERN_C_END
