#pragma once

#include "Platform/CoreMIDI/Live/LiveStudio.h"
#include "Platform/CoreMIDI/Store/ObjectEditor.h"

namespace KestrinMIDI {

/// Finds the database's objects for what is plugged in now, and makes those that are missing.
///
/// What a person renamed keeps that name; manufacturer, model and the names of devices and ports
/// follow the unit only where they still are what the unit last said.
class LiveBinding {
public:
    explicit LiveBinding(ObjectStore& store);

    /// Finds all objects. False when something must be made or brought up to date first: then
    /// Write.
    bool Find(const LiveStudio& studio);
    /// Whether an object was not found, so that something plugged can't be seen before Write.
    bool LacksObjects() const { return fLacksObjects; }
    /// Makes and updates what Find misses, within the caller's transaction, and finds all objects.
    OSStatus Write(const LiveStudio& studio, ObjectEditor& editor);

    /// The objects that were found to be there: devices, entities and endpoints.
    const std::vector<PluggedObject>& Plugged() const { return fPlugged; }

private:
    bool Bind(const LiveStudio& studio);
    void BindDevice(const LiveDevice& live, StoredObject* device);
    void BindPort(const LivePort& live, StoredObject& device);
    void BindPortEndpoint(StoredObject& entity, MIDIObjectType type);
    void BindProgramEndpoints(const LiveStudio& studio, MIDIObjectType type);
    void BindProgramEndpoint(const LiveEndpoint& live, StoredObject* endpoint);

    StoredObject* CreateDevice(const LiveDevice& live);
    StoredObject* Create(MIDIObjectType type, StoredObject* owner, const HardwareRecord* record);
    void Follow(StoredObject& object, const HardwareRecord& record);
    void FollowText(StoredObject& object, CFStringRef key, const std::string& last,
                    const std::string& now);
    void FollowName(StoredObject& device, const std::string& last, const std::string& now);
    void SetText(StoredObject& object, CFStringRef key, const std::string& text);
    /// The name itself, or one made from it that no device has.
    std::string DistinctDeviceName(const std::string& name) const;
    /// Notes that something is to be written; whether that may be done now.
    bool MayWrite();

    ObjectStore& fStore;
    ObjectEditor* fEditor = nullptr; ///< null while only finding
    OSStatus fStatus = noErr;
    bool fIsComplete = true;
    bool fLacksObjects = false;
    std::vector<PluggedObject> fPlugged;
};

} // namespace KestrinMIDI
