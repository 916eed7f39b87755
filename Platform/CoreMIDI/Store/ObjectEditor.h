#pragma once

#include "Platform/CoreMIDI/Store/Database.h"
#include "Platform/CoreMIDI/Store/ObjectStore.h"

namespace KestrinMIDI {

/// Changes objects in the database file and in memory alike, inside a Transaction. The statuses are
/// those of <CoreMIDI/MIDIDatabase.h>; after a failure the memory is ahead of the file and must be
/// read anew.
class ObjectEditor {
public:
    ObjectEditor(Database& file, KeyTable& keys, ObjectStore& store);

    ObjectStore& Store() const { return fStore; }
    KeyTable& Keys() const { return fKeys; }

    // Properties

    OSStatus SetProperty(StoredObject& object, PropertyKey key, PropertyValue value);
    OSStatus RemoveProperty(StoredObject& object, PropertyKey key);
    OSStatus SetUniqueID(StoredObject& object, MIDIUniqueID uniqueID);

    // Objects

    /// Makes an object with a new unique ID, the last of its owner's children. `owner` is null for
    /// devices and programs' endpoints. Null, and a status in `status`, if that fails.
    StoredObject* Create(MIDIObjectType type, StoredObject* owner, OSStatus& status);
    /// Removes an object with all that it owns.
    OSStatus Remove(StoredObject& object);
    OSStatus SetPending(StoredObject& object, std::optional<std::int64_t> since);
    OSStatus SetHardware(StoredObject& object, HardwareRecord record);

    // Rows of the file alone

    /// Of an object without properties. Its reference is its own or, where it has none, a new one.
    OSStatus InsertRow(const StoredObject& object);
    OSStatus WriteProperty(MIDIObjectRef object, PropertyKey key, const PropertyValue& value);
    OSStatus WriteHardware(MIDIObjectRef object, const HardwareRecord& record);

private:
    Database& fFile;
    KeyTable& fKeys;
    ObjectStore& fStore;
};

/// Several changes that come into the file together. Ends without a trace unless it is committed.
class Transaction {
public:
    /// Takes the file's write lock, waiting for other processes.
    explicit Transaction(Database& file);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Whether it began, and after Commit whether that went well.
    OSStatus Status() const { return fStatus; }
    OSStatus Commit();
    /// In a forked child: leaves it to the parent.
    void Abandon() { fIsOpen = false; }

private:
    Database& fFile;
    OSStatus fStatus;
    bool fIsOpen;
};

/// The status that answers for SQLite's code.
OSStatus StatusOf(int code);

} // namespace KestrinMIDI
