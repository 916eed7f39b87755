#include "Platform/CoreMIDI/Store/Repair.h"

#include "Platform/CoreMIDI/Store/Database.h"
#include "Platform/CoreMIDI/Store/ObjectEditor.h"
#include "Platform/CoreMIDI/Store/ObjectLoading.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <ctime>
#include <system_error>
#include <utility>
#include <vector>

namespace KestrinMIDI {

namespace {

/// Keeps two repairs of one file from meeting. The lock's file stays: removing it would let a third
/// process lock another one.
class RepairLock {
public:
    explicit RepairLock(const std::filesystem::path& path)
        : fDescriptor(
              open((path.string() + ".repair-lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600)) {
        if (fDescriptor >= 0)
            flock(fDescriptor, LOCK_EX);
    }
    ~RepairLock() {
        if (fDescriptor >= 0)
            close(fDescriptor);
    }
    RepairLock(const RepairLock&) = delete;
    RepairLock& operator=(const RepairLock&) = delete;

private:
    int fDescriptor;
};

std::string FirstRow(sqlite3* connection, const char* sql) {
    Statement query(connection, sql);
    const int code = query.Step();
    if (code == SQLITE_ROW)
        return std::string(query.Bytes(0));
    return code == SQLITE_DONE ? std::string() : std::string(sqlite3_errstr(code));
}

std::filesystem::path DatedName(const std::filesystem::path& path) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char date[32];
    std::strftime(date, sizeof date, ".damaged-%Y%m%d-%H%M%S", &local);
    std::filesystem::path dated = path.string() + date;
    for (int number = 2; std::filesystem::exists(dated); ++number)
        dated = path.string() + date + "-" + std::to_string(number);
    return dated;
}

/// The file and what SQLite keeps beside it.
constexpr const char* kSuffixes[] = {"", "-wal", "-shm", "-journal"};

OSStatus MoveAside(const std::filesystem::path& path, const std::filesystem::path& dated) {
    for (const char* const suffix : kSuffixes) {
        std::error_code error;
        std::filesystem::rename(path.string() + suffix, dated.string() + suffix, error);
        if (error && error != std::errc::no_such_file_or_directory)
            return kMIDIUnknownError;
    }
    return noErr;
}

/// Opens a file of any condition without changing it.
ConnectionHolder OpenAsItIs(const std::filesystem::path& path) {
    sqlite3* connection = nullptr;
    sqlite3_open_v2(path.c_str(), &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE,
                    nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, 4 * static_cast<int>(kLongestValue));
    return ConnectionHolder(connection);
}

bool NeedsRepair(const std::filesystem::path& path) {
    DatabaseProblem problem;
    const std::unique_ptr<Database> file = Database::Open(path, problem);
    if (!file)
        return problem.state == kKestrinMIDIDatabaseDamaged;
    KeyTable keys;
    ObjectStore store;
    const LoadResult result = LoadObjects(file->Connection(), keys, store);
    const bool isDamaged =
        result.code != SQLITE_OK || !DamageIn(file->Connection(), result.lost).empty();
    file->CloseUntouched();
    return isDamaged;
}

/// Writes the salvaged objects, with their references and unique IDs, into a new file.
class SalvageWriter {
public:
    SalvageWriter(sqlite3* connection, const KeyTable& keys)
        : fKeys(keys)
        , fObject(connection, "INSERT INTO objects VALUES(?,?,?,?,?,?)")
        , fProperty(connection, "INSERT INTO properties VALUES(?,?,?)")
        , fHardware(connection, "INSERT INTO hardware VALUES(?,?,?,?,?,?)") {}

    int Write(const StoredObject& object, KestrinMIDIRepairCounts& counts) {
        int code = WriteObject(object);
        ++counts.objects;
        for (const StoredProperty& property : object.properties) {
            if (code != SQLITE_OK)
                return code;
            code = WriteProperty(object, property);
            ++counts.properties;
        }
        if (code == SQLITE_OK && object.hardware)
            code = WriteHardware(object);
        for (const StoredObject* const child : object.children) {
            if (code == SQLITE_OK)
                code = Write(*child, counts);
        }
        return code;
    }

private:
    int WriteObject(const StoredObject& object) {
        fObject.BindInteger(1, object.ref);
        fObject.BindInteger(2, object.type);
        if (object.ownerRef)
            fObject.BindInteger(3, object.ownerRef);
        else
            fObject.BindNull(3);
        fObject.BindInteger(4, object.position);
        fObject.BindInteger(5, object.uniqueID);
        if (object.pendingSince)
            fObject.BindInteger(6, *object.pendingSince);
        else
            fObject.BindNull(6);
        return fObject.Run();
    }

    int WriteProperty(const StoredObject& object, const StoredProperty& property) {
        fProperty.BindInteger(1, object.ref);
        fProperty.BindText(2, fKeys.TextOf(property.key));
        BindValue(fProperty, 3, property.value);
        return fProperty.Run();
    }

    int WriteHardware(const StoredObject& object) {
        fHardware.BindInteger(1, object.ref);
        fHardware.BindText(2, object.hardware->kind);
        fHardware.BindText(3, object.hardware->serial);
        fHardware.BindText(4, object.hardware->place);
        fHardware.BindText(5, object.hardware->manufacturer);
        fHardware.BindText(6, object.hardware->name);
        return fHardware.Run();
    }

    const KeyTable& fKeys;
    Statement fObject;
    Statement fProperty;
    Statement fHardware;
};

int WriteAll(sqlite3* connection, const KeyTable& keys, const ObjectStore& store,
             KestrinMIDIRepairCounts& counts) {
    SalvageWriter writer(connection, keys);
    int code = Execute(connection, "BEGIN IMMEDIATE");
    for (const ObjectStore::List* const roots :
         {&store.Devices(), &store.ExternalDevices(), &store.PendingDevices(),
          &store.VirtualEndpoints()}) {
        for (const StoredObject* const root : *roots) {
            if (code == SQLITE_OK)
                code = writer.Write(*root, counts);
        }
    }
    return code == SQLITE_OK ? Execute(connection, "COMMIT") : code;
}

/// Saves what can be read of the file at `from` into a new one at `to`.
OSStatus Salvage(const std::filesystem::path& from, const std::filesystem::path& to,
                 KestrinMIDIRepairCounts& counts) {
    KeyTable keys;
    ObjectStore store;
    {
        const ConnectionHolder damaged = OpenAsItIs(from);
        counts.lost = static_cast<UInt32>(SalvageObjects(damaged.get(), keys, store));
    }
    DatabaseProblem problem;
    const std::unique_ptr<Database> saved = Database::Open(to, problem);
    if (!saved || WriteAll(saved->Connection(), keys, store, counts) != SQLITE_OK)
        return kMIDIUnknownError;
    saved->CloseCleanly();
    return noErr;
}

void RemoveWithCompanions(const std::filesystem::path& path) {
    for (const char* const suffix : kSuffixes) {
        std::error_code ignored;
        std::filesystem::remove(path.string() + suffix, ignored);
    }
}

} // namespace

std::string DamageIn(sqlite3* connection, std::size_t rowsLost) {
    if (std::string found = FirstRow(connection, "PRAGMA integrity_check(1)"); found != "ok")
        return found;
    if (std::string table = FirstRow(connection, "PRAGMA foreign_key_check"); !table.empty())
        return "Rows of the table " + table + " belong to objects that are not there.";
    if (rowsLost > 0)
        return std::to_string(rowsLost) + " rows make no sense.";
    return {};
}

OSStatus RepairDatabase(const std::filesystem::path& path, std::filesystem::path& savedAs,
                        KestrinMIDIRepairCounts& counts) {
    const RepairLock lock(path);
    if (!std::filesystem::exists(path) || !NeedsRepair(path))
        return kMIDINotPermitted;
    const std::filesystem::path fresh = path.string() + ".new-" + std::to_string(getpid());
    savedAs = DatedName(path);
    OSStatus status = Salvage(path, fresh, counts);
    if (status == noErr)
        status = MoveAside(path, savedAs);
    std::error_code error;
    if (status == noErr)
        std::filesystem::rename(fresh, path, error);
    if (status != noErr || error)
        RemoveWithCompanions(fresh);
    return error ? OSStatus(kMIDIUnknownError) : status;
}

} // namespace KestrinMIDI
