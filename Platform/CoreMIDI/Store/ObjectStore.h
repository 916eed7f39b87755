#pragma once

#include <CoreMIDI/CoreMIDI.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KestrinMIDI {

/// A property's value: an integer, a text or bytes.
class PropertyValue {
public:
    enum class Kind : std::uint8_t { Integer, String, Data };

    static PropertyValue OfInteger(SInt32 integer) { return {Kind::Integer, integer, {}}; }
    static PropertyValue OfString(std::string_view utf8) { return {Kind::String, 0, utf8}; }
    static PropertyValue OfData(std::string_view bytes) { return {Kind::Data, 0, bytes}; }

    Kind Type() const { return fKind; }
    SInt32 Integer() const { return fInteger; }
    /// UTF-8 of a string, the bytes of data.
    std::string_view Bytes() const { return fBytes; }
    /// The string or data as an object that the caller owns.
    CFTypeRef MakeObject() const;
    bool operator==(const PropertyValue& other) const = default;

private:
    PropertyValue(Kind kind, SInt32 integer, std::string_view bytes)
        : fKind(kind)
        , fInteger(integer)
        , fBytes(bytes) {}

    Kind fKind;
    SInt32 fInteger;
    std::string fBytes;
};

/// The number of a property key; KeyTable gives them out.
using PropertyKey = std::uint32_t;

struct StoredProperty {
    PropertyKey key;
    PropertyValue value;
    bool operator==(const StoredProperty&) const = default;
};

/// What the system last said of a plugged device, of one of its ports or of a program's endpoint.
/// `kind`, `serial` and `place` say which one it is, as DeviceMatching has them; the others what it
/// is called.
struct HardwareRecord {
    std::string kind;
    std::string serial;
    std::string place;
    std::string manufacturer;
    std::string name;
    bool operator==(const HardwareRecord&) const = default;
};

/// An object that is there now, with its live properties: they tell where, and are never stored.
struct PluggedObject {
    MIDIObjectRef ref;
    std::vector<StoredProperty> live;
    bool operator==(const PluggedObject&) const = default;
};

/// One MIDI object as the database has it. Owner and children are not owned.
struct StoredObject {
    MIDIObjectRef ref = 0;
    MIDIObjectType type = kMIDIObjectType_Other;
    MIDIUniqueID uniqueID = kMIDIInvalidUniqueID;
    bool isPlugged = false; ///< the system tells that it is there now
    StoredObject* owner = nullptr;
    std::unique_ptr<HardwareRecord> hardware; ///< null for what a person added
    std::vector<StoredProperty> properties;
    mutable std::vector<PropertyKey> listedKeys; ///< in alphabetical order, made when asked for
    std::vector<StoredProperty> live;            ///< empty while unplugged

    std::vector<StoredObject*> children; ///< sources before destinations, each in their order
    std::int64_t position = 0;
    std::optional<std::int64_t> pendingSince; ///< set while a device is not added to the setup
    MIDIObjectRef ownerRef = 0;

    const PropertyValue* Own(PropertyKey key) const;
    /// Its own value, else its owner's.
    const PropertyValue* Inherited(PropertyKey key) const;
    const StoredObject& Root() const;
    /// Whether it takes part in the setup now: plugged in, or added by a person.
    bool IsPresent() const;
};

bool IsDevice(const StoredObject& object);   ///< device or external device
bool IsEntity(const StoredObject& object);   ///< of either
bool IsEndpoint(const StoredObject& object); ///< source or destination of either
bool IsExternal(const StoredObject& object);
/// Whether the system says if the object is there, not a person.
bool HasDriver(const StoredObject& object);

/// Numbers for property keys, so that objects are searched without comparing texts.
class KeyTable {
public:
    KeyTable();

    static constexpr PropertyKey kUniqueID = 0;
    static constexpr PropertyKey kOffline = 1;
    // The live properties
    static constexpr PropertyKey kSequencerClient = 2;
    static constexpr PropertyKey kSequencerPort = 3;
    static constexpr PropertyKey kCard = 4;
    static constexpr PropertyKey kCardID = 5;
    static constexpr PropertyKey kRawMIDI = 6;
    static constexpr PropertyKey kUSBPath = 7;
    static constexpr PropertyKey kUSBSerial = 8;
    static constexpr PropertyKey kUSBVendorProduct = 9;
    static bool IsLive(PropertyKey key) {
        return key >= kSequencerClient && key <= kUSBVendorProduct;
    }

    /// A key that was never met gets a new number.
    PropertyKey NumberOf(std::string_view key);
    PropertyKey NumberOf(CFStringRef key);
    const std::string& TextOf(PropertyKey key) const { return *fTexts[key]; }

private:
    std::map<std::string, PropertyKey, std::less<>> fNumbers;
    std::vector<const std::string*> fTexts;
};

/// The database's objects in memory, as last read. It changes nothing in the file.
class ObjectStore {
public:
    ObjectStore() = default;
    ObjectStore(ObjectStore&&) = default;
    ObjectStore& operator=(ObjectStore&&) = default;

    // Finding; null where there is none

    StoredObject* Find(MIDIObjectRef ref) const;
    StoredObject* FindByUniqueID(MIDIUniqueID uniqueID) const;
    std::size_t Count() const { return fObjects.size(); }
    /// By reference; also what is not added to the setup yet.
    void ForEach(const std::function<void(const StoredObject&)>& visit) const;

    // Lists, in the order in which they are enumerated. Valid until the store changes.

    using List = std::vector<const StoredObject*>;
    const List& Devices() const { return Lists().devices; }
    const List& ExternalDevices() const { return Lists().externalDevices; }
    /// Programs' endpoints, plugged in or not.
    const List& VirtualEndpoints() const { return Lists().virtualEndpoints; }
    const List& Sources() const { return Lists().sources; }
    const List& Destinations() const { return Lists().destinations; }
    /// Devices that were made and not yet added.
    const List& PendingDevices() const { return Lists().pendingDevices; }

    // Changing

    /// Takes an object in without linking it to its owner; one that makes no sense by itself, or
    /// whose reference or unique ID is taken, is left out (false).
    bool Insert(std::unique_ptr<StoredObject> object);
    /// Links what was inserted to its owners and drops what has no proper one. Answers the number
    /// of objects dropped.
    std::size_t LinkAll();
    /// Inserts and links one object.
    StoredObject* Add(std::unique_ptr<StoredObject> object);
    /// Removes an object with all that it owns.
    void Remove(MIDIObjectRef ref);
    void SetProperty(StoredObject& object, PropertyKey key, PropertyValue value);
    /// False where the object has none of its own.
    bool RemoveProperty(StoredObject& object, PropertyKey key);
    void SetUniqueID(StoredObject& object, MIDIUniqueID uniqueID);
    void SetPending(StoredObject& object, std::optional<std::int64_t> since);
    /// Says which objects with hardware are there now.
    void SetPlugged(const std::vector<PluggedObject>& plugged);

private:
    struct AllLists {
        List devices, externalDevices, virtualEndpoints, sources, destinations, pendingDevices;
    };

    const AllLists& Lists() const;
    void ListObject(AllLists& lists, const StoredObject& object) const;
    bool LinkToOwner(StoredObject& object);

    std::map<MIDIObjectRef, std::unique_ptr<StoredObject>> fObjects;
    std::map<MIDIUniqueID, StoredObject*> fByUniqueID;
    mutable std::unique_ptr<AllLists> fLists;
};

} // namespace KestrinMIDI
