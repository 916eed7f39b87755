#include "Platform/CoreFoundation/Text.h"
#include "Platform/CoreMIDI/Interface/Service.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <algorithm>

using namespace KestrinMIDI;

const CFStringRef kMIDIPropertyName = CFSTR("name");
const CFStringRef kMIDIPropertyManufacturer = CFSTR("manufacturer");
const CFStringRef kMIDIPropertyModel = CFSTR("model");
const CFStringRef kMIDIPropertyUniqueID = CFSTR("uniqueID");
const CFStringRef kMIDIPropertyDeviceID = CFSTR("deviceID");
const CFStringRef kMIDIPropertyConnectionUniqueID = CFSTR("connUniqueID");
const CFStringRef kMIDIPropertyOffline = CFSTR("offline");
const CFStringRef kMIDIPropertyPrivate = CFSTR("private");
const CFStringRef kMIDIPropertyDriverOwner = CFSTR("driver");
const CFStringRef kMIDIPropertyIsEmbeddedEntity = CFSTR("embedded");

const CFStringRef kKestrinMIDIPropertySequencerClient = CFSTR("kestrin.alsa.client");
const CFStringRef kKestrinMIDIPropertySequencerPort = CFSTR("kestrin.alsa.port");
const CFStringRef kKestrinMIDIPropertyCard = CFSTR("kestrin.alsa.card");
const CFStringRef kKestrinMIDIPropertyCardID = CFSTR("kestrin.alsa.cardID");
const CFStringRef kKestrinMIDIPropertyRawMIDI = CFSTR("kestrin.alsa.rawMIDI");
const CFStringRef kKestrinMIDIPropertyUSBPath = CFSTR("kestrin.usb.path");
const CFStringRef kKestrinMIDIPropertyUSBSerial = CFSTR("kestrin.usb.serial");
const CFStringRef kKestrinMIDIPropertyUSBVendorProduct = CFSTR("USBVendorProduct");

namespace {

/// Looks a property of one kind up, the object's own or inherited.
OSStatus Find(const StoredObject* object, PropertyKey key, PropertyValue::Kind kind,
              const PropertyValue*& value) {
    if (!object)
        return kMIDIObjectNotFound;
    value = object->Inherited(key);
    if (!value)
        return kMIDIUnknownProperty;
    return value->Type() == kind ? OSStatus(noErr) : OSStatus(kMIDIWrongPropertyType);
}

/// The properties that are no rows of their own.
bool IsComputed(const StoredObject& object, PropertyKey key) {
    return key == KeyTable::kUniqueID ||
           (key == KeyTable::kOffline && (HasDriver(object) || !object.Inherited(key)));
}

SInt32 ComputedValue(const StoredObject& object, PropertyKey key) {
    if (key == KeyTable::kUniqueID)
        return object.uniqueID;
    return HasDriver(object) && !object.IsPresent() ? 1 : 0;
}

OSStatus CopyObjectProperty(MIDIObjectRef ref, CFStringRef propertyID, PropertyValue::Kind kind,
                            CFTypeRef& result) {
    if (!propertyID)
        return kMIDIUnknownProperty;
    return InSession(kMIDIUnknownError, [&](ServiceSession& session) -> OSStatus {
        const StoredObject* const object = session.Store().Find(ref);
        const PropertyKey key = session.Keys().NumberOf(propertyID);
        if (object && IsComputed(*object, key))
            return kMIDIWrongPropertyType;
        const PropertyValue* value = nullptr;
        const OSStatus status = Find(object, key, kind, value);
        if (status == noErr)
            result = value->MakeObject();
        return status == noErr && !result ? OSStatus(kMIDIUnknownError) : status;
    });
}

OSStatus SetValue(ObjectEditor& editor, StoredObject& object, PropertyKey key,
                  PropertyValue value) {
    const bool isInteger = value.Type() == PropertyValue::Kind::Integer;
    if (key == KeyTable::kUniqueID)
        return isInteger ? editor.SetUniqueID(object, value.Integer())
                         : OSStatus(kMIDIWrongPropertyType);
    if (KeyTable::IsLive(key) || (key == KeyTable::kOffline && HasDriver(object)))
        return kMIDINotPermitted;
    return editor.SetProperty(object, key, std::move(value));
}

/// `makeValue` makes the value inside the session, where it may fail.
template <typename MakeValue>
OSStatus SetProperty(MIDIObjectRef ref, CFStringRef propertyID, MakeValue makeValue) {
    if (!propertyID)
        return kMIDIUnknownProperty;
    return InSession(kMIDIUnknownError, [&](ServiceSession& session) -> OSStatus {
        const PropertyKey key = session.Keys().NumberOf(propertyID);
        PropertyValue value = makeValue();
        if (session.HasStored(ref, key, value)) // no lock to wait for
            return noErr;
        return session.Apply([&](ObjectEditor& editor) -> OSStatus {
            StoredObject* const object = editor.Store().Find(ref);
            return object ? SetValue(editor, *object, key, std::move(value))
                          : OSStatus(kMIDIObjectNotFound);
        });
    });
}

const std::vector<PropertyKey>& ListedKeys(const StoredObject& object, const KeyTable& keys) {
    std::vector<PropertyKey>& listed = object.listedKeys;
    if (listed.size() != object.properties.size()) {
        listed.clear();
        for (const StoredProperty& property : object.properties)
            listed.push_back(property.key);
        std::sort(listed.begin(), listed.end(), [&keys](PropertyKey one, PropertyKey other) {
            return keys.TextOf(one) < keys.TextOf(other);
        });
    }
    return listed;
}

} // namespace

OSStatus MIDIObjectGetIntegerProperty(MIDIObjectRef ref, CFStringRef propertyID, SInt32* outValue) {
    if (!propertyID)
        return kMIDIUnknownProperty;
    return InSession(kMIDIUnknownError, [&](ServiceSession& session) -> OSStatus {
        const StoredObject* const object = session.Store().Find(ref);
        const PropertyKey key = session.Keys().NumberOf(propertyID);
        if (object && IsComputed(*object, key)) {
            *outValue = ComputedValue(*object, key);
            return noErr;
        }
        const PropertyValue* value = nullptr;
        const OSStatus status = Find(object, key, PropertyValue::Kind::Integer, value);
        if (status == noErr)
            *outValue = value->Integer();
        return status;
    });
}

OSStatus MIDIObjectGetStringProperty(MIDIObjectRef ref, CFStringRef propertyID,
                                     CFStringRef* outString) {
    CFTypeRef result = nullptr;
    const OSStatus status =
        CopyObjectProperty(ref, propertyID, PropertyValue::Kind::String, result);
    if (status == noErr)
        *outString = static_cast<CFStringRef>(result);
    return status;
}

OSStatus MIDIObjectGetDataProperty(MIDIObjectRef ref, CFStringRef propertyID, CFDataRef* outData) {
    CFTypeRef result = nullptr;
    const OSStatus status = CopyObjectProperty(ref, propertyID, PropertyValue::Kind::Data, result);
    if (status == noErr)
        *outData = static_cast<CFDataRef>(result);
    return status;
}

OSStatus MIDIObjectSetIntegerProperty(MIDIObjectRef ref, CFStringRef propertyID, SInt32 value) {
    return SetProperty(ref, propertyID, [value] { return PropertyValue::OfInteger(value); });
}

OSStatus MIDIObjectSetStringProperty(MIDIObjectRef ref, CFStringRef propertyID,
                                     CFStringRef string) {
    if (!string)
        return paramErr;
    return SetProperty(ref, propertyID, [=] { return PropertyValue::OfString(Utf8Of(string)); });
}

OSStatus MIDIObjectSetDataProperty(MIDIObjectRef ref, CFStringRef propertyID, CFDataRef data) {
    if (!data)
        return paramErr;
    return SetProperty(ref, propertyID, [=] { return PropertyValue::OfData(BytesOf(data)); });
}

OSStatus MIDIObjectRemoveProperty(MIDIObjectRef ref, CFStringRef propertyID) {
    if (!propertyID)
        return kMIDIUnknownProperty;
    return InSession(kMIDIUnknownError, [&](ServiceSession& session) -> OSStatus {
        const PropertyKey key = session.Keys().NumberOf(propertyID);
        if (key == KeyTable::kUniqueID)
            return kMIDINotPermitted;
        return session.Apply([&](ObjectEditor& editor) -> OSStatus {
            StoredObject* const object = editor.Store().Find(ref);
            return object ? editor.RemoveProperty(*object, key) : OSStatus(kMIDIObjectNotFound);
        });
    });
}

ItemCount KestrinMIDIObjectGetNumberOfProperties(MIDIObjectRef ref) {
    return InSession(0, [ref](ServiceSession& session) -> ItemCount {
        const StoredObject* const object = session.Store().Find(ref);
        return object ? object->properties.size() : 0;
    });
}

CFStringRef KestrinMIDIObjectCopyPropertyKey(MIDIObjectRef ref, ItemCount index0) {
    return InSession(nullptr, [=](ServiceSession& session) -> CFStringRef {
        const StoredObject* const object = session.Store().Find(ref);
        if (!object || index0 >= object->properties.size())
            return nullptr;
        const PropertyKey key = ListedKeys(*object, session.Keys())[index0];
        return MakeString(session.Keys().TextOf(key));
    });
}
