#include "Platform/CoreMIDI/Store/Repair.h"

#include "Platform/CoreMIDI/Store/Database.h"
#include "Platform/CoreMIDI/Store/LockPatience.h"
#include "Platform/CoreMIDI/Store/ObjectEditor.h"
#include "Platform/CoreMIDI/Store/ObjectLoading.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <system_error>
#include <utility>
#include <vector>

namespace KestrinMIDI {

namespace {

/// Keeps two repairs in one folder from meeting, without a file that would stay behind.
class FolderLock {
public:
    explicit FolderLock(const std::filesystem::path& folder)
        : fDescriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
    ~FolderLock() {
        if (fDescriptor >= 0)
            close(fDescriptor);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// False where another repair goes on for too long. A file system without such locks has none
    /// to wait for.
    bool Take() const {
        for (int tries = 0; flock(fDescriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;) {
            if (!WaitForLock(tries++))
                return false;
        }
        return true;
    }
    /// Brings the folder's names to the disk.
    void Synchronise() const { fsync(fDescriptor); }

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

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code missing;
    return std::filesystem::equivalent(one, other, missing);
}

/// The name that an earlier repair gave the file before it was killed, or a new one.
std::filesystem::path DatedName(const std::filesystem::path& path) {
    const std::filesystem::path begin = With(path, ".damaged-");
    std::error_code error;
    for (std::filesystem::directory_iterator entry(path.parent_path(), error), end; entry != end;
         entry.increment(error)) {
        if (entry->path().native().starts_with(begin.native()) && IsSameFile(*entry, path))
            return entry->path();
    }
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y%m%d-%H%M%S", &local);
    std::filesystem::path dated = With(begin, date);
    for (int number = 2; std::filesystem::exists(dated, error); ++number)
        dated = With(begin, date + ("-" + std::to_string(number)));
    return dated;
}

OSStatus StatusOfError(const std::error_code& error) {
    if (error == std::errc::no_space_on_device)
        return kKestrinMIDIErrFull;
    return error ? OSStatus(kKestrinMIDIErrDisk) : OSStatus(noErr);
}

/// What SQLite keeps beside a file.
constexpr const char* kCompanions[] = {"-wal", "-shm", "-journal"};

void RemoveCompanions(const std::filesystem::path& path) {
    for (const char* const suffix : kCompanions) {
        std::error_code ignored;
        std::filesystem::remove(With(path, suffix), ignored);
    }
}

void RemoveWithCompanions(const std::filesystem::path& path) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    RemoveCompanions(path);
}

/// A copy that has its name only once it is whole, and on the disk.
std::error_code CopyWhole(const std::filesystem::path& from, const std::filesystem::path& part,
                          const std::filesystem::path& to) {
    std::error_code error;
    std::filesystem::copy_file(from, part, std::filesystem::copy_options::overwrite_existing,
                               error);
    const int copy = error ? -1 : open(part.c_str(), O_RDONLY | O_CLOEXEC);
    if (!error && (copy < 0 || fsync(copy) != 0))
        error = std::error_code(errno, std::generic_category());
    if (copy >= 0)
        close(copy);
    if (!error)
        std::filesystem::rename(part, to, error);
    return error;
}

/// Gives the damaged file a second name, and its log, which may hold what the file does not.
std::error_code SetAside(const std::filesystem::path& path, const std::filesystem::path& dated) {
    std::error_code error;
    for (const char* const suffix : {"", "-wal", "-journal"}) {
        const std::filesystem::path from = With(path, suffix);
        const std::filesystem::path to = With(dated, suffix);
        if (!IsFilled(from) || IsSameFile(from, to))
            continue;
        std::filesystem::create_hard_link(from, to, error);
        if (error) // a file system without links
            error = CopyWhole(from, With(path, ".copy"), to);
        if (error)
            break;
    }
    return error;
}

/// Brings what stands in the log into the file itself, so that the file is whole without it.
void CompleteFromLog(const std::filesystem::path& path) {
    ConnectionHolder connection;
    OpenConnection(path, connection);
    QueryInteger(connection.get(), "PRAGMA schema_version", 0); // opens the log
    sqlite3_wal_checkpoint_v2(connection.get(), "main", SQLITE_CHECKPOINT_PASSIVE, nullptr,
                              nullptr);
}

/// Lets nobody open the file who has not opened it yet. Those who have wait for the write lock, so
/// that nothing is confirmed in a log that is about to lose its name.
void KeepOthersOut(sqlite3* connection) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (!file || !file->pMethods)
        return;
    file->pMethods->xLock(file, SQLITE_LOCK_SHARED);
    // Where others have the file open this ends half-way, at the lock that keeps new ones out.
    file->pMethods->xLock(file, SQLITE_LOCK_EXCLUSIVE);
}

/// At each moment the path names the damaged file or the new one. The log must go before: SQLite
/// would take it for the new file's.
OSStatus Replace(sqlite3* damaged, const std::filesystem::path& path,
                 const std::filesystem::path& fresh, std::filesystem::path& savedAs) {
    savedAs = DatedName(path);
    if (const std::error_code error = SetAside(path, savedAs))
        return StatusOfError(error);
    CompleteFromLog(path);
    KeepOthersOut(damaged);
    RemoveCompanions(path);
    std::error_code error;
    std::filesystem::rename(fresh, path, error);
    return StatusOfError(error);
}

/// noErr where a repair is due.
OSStatus CheckNeed(const std::filesystem::path& path) {
    DatabaseProblem problem;
    const std::unique_ptr<Database> file = Database::Open(path, problem);
    if (!file && problem.state == kKestrinMIDIDatabaseLocked)
        return kKestrinMIDIErrLocked;
    if (!file)
        return problem.state == kKestrinMIDIDatabaseDamaged ? OSStatus(noErr)
                                                            : OSStatus(kMIDINotPermitted);
    KeyTable keys;
    ObjectStore store;
    const LoadResult result = LoadObjects(file->Connection(), keys, store);
    const bool isDamaged =
        result.code != SQLITE_OK || !DamageIn(file->Connection(), result.lost).empty();
    file->CloseUntouched();
    return isDamaged ? OSStatus(noErr) : OSStatus(kMIDINotPermitted);
}

/// Writes an object with all that it owns.
OSStatus Write(const StoredObject& object, ObjectEditor& editor, KestrinMIDIRepairCounts& counts) {
    OSStatus status = editor.InsertRow(object);
    ++counts.objects;
    for (const StoredProperty& property : object.properties) {
        if (status != noErr)
            return status;
        status = editor.WriteProperty(object.ref, property.key, property.value);
        ++counts.properties;
    }
    if (status == noErr && object.hardware)
        status = editor.WriteHardware(object.ref, *object.hardware);
    for (const StoredObject* const child : object.children) {
        if (status == noErr)
            status = Write(*child, editor, counts);
    }
    return status;
}

/// Writes the salvaged objects, with their references and unique IDs, into a new file.
OSStatus WriteAll(Database& file, KeyTable& keys, ObjectStore& store,
                  KestrinMIDIRepairCounts& counts) {
    Transaction transaction(file);
    ObjectEditor editor(file, keys, store);
    OSStatus status = transaction.Status();
    for (const ObjectStore::List* const roots :
         {&store.Devices(), &store.ExternalDevices(), &store.PendingDevices(),
          &store.VirtualEndpoints()}) {
        for (const StoredObject* const root : *roots) {
            if (status == noErr)
                status = Write(*root, editor, counts);
        }
    }
    return status == noErr ? transaction.Commit() : status;
}

/// Saves what can be read of the damaged file into a new one.
OSStatus Salvage(sqlite3* damaged, const std::filesystem::path& fresh,
                 KestrinMIDIRepairCounts& counts) {
    KeyTable keys;
    ObjectStore store;
    const SalvageResult result = SalvageObjects(damaged, keys, store);
    counts.lost = static_cast<UInt32>(result.lost);
    counts.unreadable = static_cast<UInt32>(result.unreadable);
    RemoveWithCompanions(fresh); // of a repair that was killed
    DatabaseProblem problem;
    const std::unique_ptr<Database> saved = Database::Open(fresh, problem);
    if (!saved)
        return problem.code == SQLITE_OK ? OSStatus(kKestrinMIDIErrDisk) : StatusOf(problem.code);
    if (const OSStatus status = WriteAll(*saved, keys, store, counts); status != noErr)
        return status;
    const int code = saved->CloseCleanly();
    return code == SQLITE_OK && IsFilled(With(fresh, "-wal")) ? OSStatus(kKestrinMIDIErrDisk)
                                                              : StatusOf(code);
}

} // namespace

std::string DamageIn(sqlite3* connection, std::size_t rowsLost) {
    if (std::string found = FirstRow(connection, "PRAGMA integrity_check(1)"); found != "ok")
        return found;
    if (std::string table = FirstRow(connection, "PRAGMA foreign_key_check"); !table.empty())
        return Sentence("Rows of a table belong to objects that are not there (%2).", {}, table);
    if (rowsLost > 0)
        return Sentence("Some rows make no sense (%2).", {}, std::to_string(rowsLost));
    return {};
}

OSStatus RepairDatabase(const std::filesystem::path& path, std::filesystem::path& savedAs,
                        KestrinMIDIRepairCounts& counts) {
    std::error_code error;
    const std::filesystem::path file = std::filesystem::canonical(path, error); // past links
    if (error)
        return kMIDINotPermitted;
    const FolderLock lock(file.parent_path());
    if (!lock.Take())
        return kKestrinMIDIErrLocked;
    if (const OSStatus status = CheckNeed(file); status != noErr)
        return status;
    // The write lock stays to the end, so that nothing is confirmed that the new file lacks. A file
    // that is damaged beyond locking is nobody's to write.
    ConnectionHolder damaged;
    OpenConnection(file, damaged);
    if ((Execute(damaged.get(), "BEGIN IMMEDIATE") & 0xFF) == SQLITE_BUSY)
        return kKestrinMIDIErrLocked;
    const std::filesystem::path fresh = With(file, ".repair");
    OSStatus status = Salvage(damaged.get(), fresh, counts);
    if (status == noErr)
        status = Replace(damaged.get(), file, fresh, savedAs);
    if (status != noErr)
        RemoveWithCompanions(fresh);
    std::filesystem::remove(With(file, ".copy"), error);
    lock.Synchronise();
    return status;
}

} // namespace KestrinMIDI
