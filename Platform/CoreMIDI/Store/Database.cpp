#include "Platform/CoreMIDI/Store/Database.h"

#include "Platform/CoreMIDI/Store/LockPatience.h"
#include "Platform/CoreMIDI/Store/Schema.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace KestrinMIDI {

namespace {

constexpr int kExitBusyMilliseconds = 1000;
// No row of ours comes near it; what a hostile file holds beyond is not read into memory.
constexpr int kLongestRow = 4 << 20;

/// Where the environment names none, the one in the user database.
std::filesystem::path Home() {
    if (const char* const home = std::getenv("HOME"); home && home[0] == '/')
        return home;
    passwd entry{};
    passwd* found = nullptr;
    std::string texts(1 << 14, '\0');
    const int error = getpwuid_r(geteuid(), &entry, texts.data(), texts.size(), &found);
    return error == 0 && found && found->pw_dir ? found->pw_dir : "/";
}

std::filesystem::path DataHome() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && data[0] == '/')
        return data;
    return Home() / ".local" / "share";
}

/// Makes the folder and those above it, for the user alone. 0 or an errno.
int MakeFolders(const std::filesystem::path& folder) {
    const auto make = [&folder] {
        return mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
    };
    const int error = make();
    if (error != ENOENT || !folder.has_relative_path())
        return error;
    const int errorAbove = MakeFolders(folder.parent_path());
    return errorAbove ? errorAbove : make();
}

/// Makes a new file for the user alone. What hinders that is met again when the file is opened.
void MakeFile(const std::filesystem::path& path) {
    // One that is there is not opened: closing it would undo locks that the process has on it.
    const int descriptor = open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor >= 0)
        close(descriptor);
}

/// Whether the path names what is there and is no file.
bool IsSomethingElse(const std::filesystem::path& path) {
    std::error_code missing;
    const std::filesystem::file_status status = std::filesystem::status(path, missing);
    return exists(status) && !is_regular_file(status);
}

/// A file of unknown origin may neither run code of its own nor take much memory.
void Harden(sqlite3* connection) {
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, kLongestRow);
}

void KeepOnClose(sqlite3* connection, bool untouched) {
    sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, untouched ? 1 : 0, nullptr);
}

} // namespace

std::string Sentence(std::string pattern, const std::filesystem::path& path,
                     const std::string& cause) {
    // The cause first: the path may hold anything.
    if (const std::size_t place = pattern.find("%2"); place != std::string::npos)
        pattern.replace(place, 2, cause);
    if (const std::size_t place = pattern.find("%1"); place != std::string::npos)
        pattern.replace(place, 2, path.string());
    return pattern;
}

std::filesystem::path DatabasePath() {
    const char* const named = std::getenv("KESTRIN_MIDI_DATABASE");
    if (!named || !*named)
        return DataHome() / "kestrin-midi" / "objects.sqlite3";
    // A name that begins otherwise could be one that means something else to SQLite (":memory:").
    return named[0] == '/' ? named : std::filesystem::path(".") / named;
}

std::filesystem::path With(const std::filesystem::path& path, std::string_view suffix) {
    std::filesystem::path result = path;
    return result += suffix;
}

bool IsFilled(const std::filesystem::path& path) {
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(path, missing);
    return !missing && size > 0;
}

int OpenConnection(const std::filesystem::path& path, ConnectionHolder& connection) {
    MakeFile(path);
    sqlite3* opened = nullptr;
    const int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    const int code = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
    connection.reset(opened);
    if (code == SQLITE_OK) {
        KeepOnClose(opened, true);
        Harden(opened);
        BePatient(opened);
    }
    return code;
}

DatabaseProblem ProblemOf(int code, const std::filesystem::path& path) {
    switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return {};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {
            kKestrinMIDIDatabaseLocked,
            Sentence("The MIDI database %1 has been kept locked by another program for too long.",
                     path)};
    case SQLITE_READONLY:
        return {kKestrinMIDIDatabaseReadOnly,
                Sentence("The MIDI database %1 can only be read, not written.", path)};
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        if (std::error_code none; std::filesystem::is_regular_file(path, none))
            return {
                kKestrinMIDIDatabaseReadOnly,
                Sentence(
                    "The MIDI database %1 can't be opened for reading and writing in its folder.",
                    path)};
        return {kKestrinMIDIDatabaseNoFolder,
                Sentence("The MIDI database %1 can't be made in its folder.", path)};
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_NOMEM:
        return {kKestrinMIDIDatabaseUnreachable,
                Sentence("The MIDI database %1 can't be read or written (%2).", path,
                         sqlite3_errstr(code)),
                code};
    default:
        return {kKestrinMIDIDatabaseDamaged,
                Sentence("The MIDI database %1 is damaged (%2).", path, sqlite3_errstr(code))};
    }
}

std::unique_ptr<Database> Database::Open(const std::filesystem::path& path,
                                         DatabaseProblem& problem) {
    const std::filesystem::path folder = path.parent_path();
    if (const int error = MakeFolders(folder)) {
        problem = {kKestrinMIDIDatabaseNoFolder,
                   Sentence("The folder %1 for the MIDI database can't be made (%2).", folder,
                            std::strerror(error))};
        return nullptr;
    }
    ConnectionHolder connection;
    // A pipe would be waited for, a device swallow what it is given.
    const int code = IsSomethingElse(path) ? SQLITE_CANTOPEN : OpenConnection(path, connection);
    if (code != SQLITE_OK) {
        problem = ProblemOf(code, path);
        return nullptr;
    }
    const SchemaResult schema = PrepareSchema(connection.get(), path);
    problem = schema.problem;
    if (problem.state != kKestrinMIDIDatabaseReady)
        return nullptr;
    KeepOnClose(connection.get(), false);
    return std::unique_ptr<Database>(new Database(path, std::move(connection), schema.isWAL));
}

Database::Database(std::filesystem::path path, ConnectionHolder connection, bool isWAL)
    : fPath(std::move(path))
    , fConnection(std::move(connection)) {
    if (isWAL)
        FindSharedHeader();
}

Statement& Database::Prepared(const char* sql) {
    auto found = fStatements.find(sql);
    if (found == fStatements.end())
        found = fStatements
                    .try_emplace(sql, fConnection.get(), sql,
                                 static_cast<unsigned int>(SQLITE_PREPARE_PERSISTENT))
                    .first;
    return found->second;
}

void Database::FindSharedHeader() {
    constexpr int kRegionSize = 32768; // as SQLite maps the WAL-index
    sqlite3_file* file = nullptr;
    sqlite3_file_control(Connection(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (!file || !file->pMethods || file->pMethods->iVersion < 2)
        return;
    volatile void* region = nullptr;
    if (file->pMethods->xShmMap(file, 0, kRegionSize, 0, &region) == SQLITE_OK)
        fSharedHeader = static_cast<const volatile std::uint32_t*>(region);
}

Database::Header Database::ReadSharedHeader() const {
    Header header{};
    for (std::size_t i = 0; i < header.size(); ++i)
        header[i] = fSharedHeader[i];
    return header;
}

std::int64_t Database::ReadVersion() {
    Statement& query = Prepared("PRAGMA data_version");
    const std::int64_t version = query.Step() == SQLITE_ROW ? query.Integer(0) : -1;
    query.Reset();
    return version;
}

bool Database::WasChangedByOthers() {
    // Without the shared memory (a file system that has none) every question goes to the file.
    const Header header = fSharedHeader ? ReadSharedHeader() : Header{};
    if (fSharedHeader && header == fKnownHeader)
        return false;
    if (ReadVersion() != fKnownVersion)
        return true;
    fKnownHeader = header;
    return false;
}

void Database::MarkRead() {
    // In this order: a commit between the two is met again as a change.
    if (fSharedHeader)
        fKnownHeader = ReadSharedHeader();
    fKnownVersion = ReadVersion();
}

void Database::NoteOwnCommit() {
    if (!fSharedHeader)
        return;
    // Where the counter went on by more than one, others committed too: WasChangedByOthers finds
    // out.
    const Header header = ReadSharedHeader();
    if (header[kChangeCounter] == fKnownHeader[kChangeCounter] + 1)
        fKnownHeader = header;
}

bool Database::HasMoved() const {
    int moved = 0;
    sqlite3_file_control(Connection(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

int Database::CloseCleanly() {
    if (HasMoved()) { // the log beside the name is another file's
        CloseUntouched();
        return SQLITE_OK;
    }
    fStatements.clear();
    sqlite3_busy_timeout(Connection(), kExitBusyMilliseconds);
    const int code =
        sqlite3_wal_checkpoint_v2(Connection(), "main", SQLITE_CHECKPOINT_FULL, nullptr, nullptr);
    fConnection.reset();
    return code;
}

void Database::CloseUntouched() {
    fStatements.clear();
    KeepOnClose(Connection(), true);
    fConnection.reset();
}

void Database::Abandon() {
    for (auto& statement : fStatements)
        new Statement(std::move(statement.second)); // never finalized
    static_cast<void>(fConnection.release());
}

} // namespace KestrinMIDI
