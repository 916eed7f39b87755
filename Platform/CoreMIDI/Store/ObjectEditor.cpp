#include "Platform/CoreMIDI/Store/ObjectEditor.h"

#include "Platform/CoreMIDI/Store/ObjectLoading.h"

#include <random>
#include <utility>

namespace KestrinMIDI {

OSStatus StatusOf(int code) {
    if (code == SQLITE_CONSTRAINT_FOREIGNKEY) // another process removed the object a moment ago
        return kMIDIObjectNotFound;
    if (code == SQLITE_CONSTRAINT_UNIQUE)
        return kMIDIIDNotUnique;
    switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return noErr;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return kKestrinMIDIErrLocked;
    case SQLITE_FULL:
        return kKestrinMIDIErrFull;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return kKestrinMIDIErrReadOnly;
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
        return kKestrinMIDIErrDisk;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return kKestrinMIDIErrDamaged;
    default:
        return kMIDIUnknownError;
    }
}

namespace {

constexpr int kMostTries = 100;

MIDIUniqueID RandomUniqueID() {
    static std::random_device entropy;
    return std::uniform_int_distribution<MIDIUniqueID>(1, 0x7FFFFFFF)(entropy);
}

/// Behind the last child; of equal positions the later reference is.
std::int64_t NextPosition(const StoredObject& owner) {
    const std::int64_t last = owner.children.empty() ? -1 : owner.children.back()->position;
    return last == INT64_MAX ? last : last + 1;
}

void BindOptional(Statement& statement, int parameter, std::optional<std::int64_t> value) {
    if (value)
        statement.BindInteger(parameter, *value);
    else
        statement.BindNull(parameter);
}

void BindValue(Statement& statement, int parameter, const PropertyValue& value) {
    switch (value.Type()) {
    case PropertyValue::Kind::Integer:
        statement.BindInteger(parameter, value.Integer());
        break;
    case PropertyValue::Kind::String:
        statement.BindText(parameter, value.Bytes());
        break;
    case PropertyValue::Kind::Data:
        statement.BindData(parameter, value.Bytes());
        break;
    }
}

} // namespace

ObjectEditor::ObjectEditor(Database& file, KeyTable& keys, ObjectStore& store)
    : fFile(file)
    , fKeys(keys)
    , fStore(store) {}

OSStatus ObjectEditor::SetProperty(StoredObject& object, PropertyKey key, PropertyValue value) {
    const PropertyValue* const present = object.Own(key);
    if (present && *present == value)
        return noErr;
    if (value.Bytes().size() > kLongestValue || fKeys.TextOf(key).size() > kLongestValue ||
        (!present && object.properties.size() >= kMostProperties))
        return kMIDINotPermitted;
    const OSStatus status = WriteProperty(object.ref, key, value);
    if (status == noErr)
        fStore.SetProperty(object, key, std::move(value));
    return status;
}

OSStatus ObjectEditor::WriteProperty(MIDIObjectRef object, PropertyKey key,
                                     const PropertyValue& value) {
    Statement& write = fFile.Prepared("INSERT INTO properties(object,key,value) VALUES(?,?,?) "
                                      "ON CONFLICT DO UPDATE SET value=excluded.value");
    write.BindInteger(1, object);
    write.BindText(2, fKeys.TextOf(key));
    BindValue(write, 3, value);
    return StatusOf(write.Run());
}

OSStatus ObjectEditor::RemoveProperty(StoredObject& object, PropertyKey key) {
    if (!object.Own(key))
        return kMIDIUnknownProperty;
    Statement& erase = fFile.Prepared("DELETE FROM properties WHERE object=? AND key=?");
    erase.BindInteger(1, object.ref);
    erase.BindText(2, fKeys.TextOf(key));
    const OSStatus status = StatusOf(erase.Run());
    if (status == noErr)
        fStore.RemoveProperty(object, key);
    return status;
}

OSStatus ObjectEditor::SetUniqueID(StoredObject& object, MIDIUniqueID uniqueID) {
    if (uniqueID == object.uniqueID)
        return noErr;
    if (uniqueID == kMIDIInvalidUniqueID || fStore.FindByUniqueID(uniqueID))
        return kMIDIIDNotUnique;
    Statement& write = fFile.Prepared("UPDATE objects SET unique_id=? WHERE id=?");
    write.BindInteger(1, uniqueID);
    write.BindInteger(2, object.ref);
    const OSStatus status = StatusOf(write.Run());
    if (status == noErr)
        fStore.SetUniqueID(object, uniqueID);
    return status;
}

OSStatus ObjectEditor::InsertRow(const StoredObject& object) {
    const auto idOrNone = [](MIDIObjectRef ref) {
        return ref ? std::optional<std::int64_t>(ref) : std::nullopt;
    };
    Statement& write = fFile.Prepared(
        "INSERT INTO objects(id,type,owner,position,unique_id,pending_since) VALUES(?,?,?,?,?,?)");
    BindOptional(write, 1, idOrNone(object.ref));
    write.BindInteger(2, object.type);
    BindOptional(write, 3, idOrNone(object.ownerRef));
    write.BindInteger(4, object.position);
    write.BindInteger(5, object.uniqueID);
    BindOptional(write, 6, object.pendingSince);
    return StatusOf(write.Run());
}

StoredObject* ObjectEditor::Create(MIDIObjectType type, StoredObject* owner, OSStatus& status) {
    auto object = std::make_unique<StoredObject>();
    object->type = type;
    if (owner) {
        object->ownerRef = owner->ref;
        object->position = NextPosition(*owner);
    }
    status = kMIDIIDNotUnique;
    // A file with rules of its own may refuse every ID.
    for (int tries = 0; tries < kMostTries && status == kMIDIIDNotUnique; ++tries) {
        object->uniqueID = RandomUniqueID();
        status = InsertRow(*object);
    }
    const std::int64_t row = sqlite3_last_insert_rowid(fFile.Connection());
    if (status == noErr && !std::in_range<MIDIObjectRef>(row))
        status = kMIDIUnknownError;
    object->ref = static_cast<MIDIObjectRef>(row);
    return status == noErr ? fStore.Add(std::move(object)) : nullptr;
}

OSStatus ObjectEditor::Remove(StoredObject& object) {
    Statement& erase = fFile.Prepared("DELETE FROM objects WHERE id=?");
    erase.BindInteger(1, object.ref);
    const OSStatus status = StatusOf(erase.Run());
    if (status == noErr)
        fStore.Remove(object.ref);
    return status;
}

OSStatus ObjectEditor::SetPending(StoredObject& object, std::optional<std::int64_t> since) {
    Statement& write = fFile.Prepared("UPDATE objects SET pending_since=? WHERE id=?");
    BindOptional(write, 1, since);
    write.BindInteger(2, object.ref);
    const OSStatus status = StatusOf(write.Run());
    if (status == noErr)
        fStore.SetPending(object, since);
    return status;
}

OSStatus ObjectEditor::SetHardware(StoredObject& object, HardwareRecord record) {
    const OSStatus status = WriteHardware(object.ref, record);
    if (status == noErr)
        object.hardware = std::make_unique<HardwareRecord>(std::move(record));
    return status;
}

OSStatus ObjectEditor::WriteHardware(MIDIObjectRef object, const HardwareRecord& record) {
    Statement& write = fFile.Prepared(
        "INSERT OR REPLACE INTO hardware(object,kind,serial,place,manufacturer,name) "
        "VALUES(?,?,?,?,?,?)");
    write.BindInteger(1, object);
    write.BindText(2, record.kind);
    write.BindText(3, record.serial);
    write.BindText(4, record.place);
    write.BindText(5, record.manufacturer);
    write.BindText(6, record.name);
    return StatusOf(write.Run());
}

Transaction::Transaction(Database& file)
    : fFile(file)
    , fStatus(StatusOf(file.Prepared("BEGIN IMMEDIATE").Run()))
    , fIsOpen(fStatus == noErr) {}

Transaction::~Transaction() {
    if (fIsOpen)
        Execute(fFile.Connection(), "ROLLBACK");
}

OSStatus Transaction::Commit() {
    fStatus = StatusOf(fFile.Prepared("COMMIT").Run());
    fIsOpen = fStatus != noErr;
    if (!fIsOpen)
        fFile.NoteOwnCommit();
    return fStatus;
}

} // namespace KestrinMIDI
