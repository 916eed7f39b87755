#include "Platform/CoreMIDI/Store/Schema.h"

#include "Platform/CoreMIDI/Store/LockPatience.h"

#include <unistd.h>

#include <array>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>

namespace KestrinMIDI {

namespace {

constexpr std::int64_t kApplicationID = 0x4B4D4442; // 'KMDB'

// One step for each version of the schema, from the version that is its index to the next.
//
// objects: `type` and `unique_id` as the service tells them; `owner` an entity's device, an
//   endpoint's entity; `position` the order among the owner's; `pending_since` the second (Unix
//   time) in which a device was made that is not yet added to the setup.
// properties: the value's own type is the property's.
// hardware: what the system last said of a plugged device, of its ports, of a program's endpoints:
//   `kind` and `serial` say which unit it is, `place` where it was, the rest what it is called.
constexpr const char* kSteps[] = {
    R"(
    CREATE TABLE objects (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        type INTEGER NOT NULL,
        owner INTEGER REFERENCES objects(id) ON DELETE CASCADE,
        position INTEGER NOT NULL,
        unique_id INTEGER NOT NULL UNIQUE,
        pending_since INTEGER
    ) STRICT;
    CREATE INDEX objects_by_owner ON objects(owner);
    CREATE TABLE properties (
        object INTEGER NOT NULL REFERENCES objects(id) ON DELETE CASCADE,
        key TEXT NOT NULL,
        value ANY NOT NULL,
        PRIMARY KEY (object, key)
    ) STRICT, WITHOUT ROWID;
    CREATE TABLE hardware (
        object INTEGER PRIMARY KEY REFERENCES objects(id) ON DELETE CASCADE,
        kind TEXT NOT NULL,
        serial TEXT NOT NULL,
        place TEXT NOT NULL,
        manufacturer TEXT NOT NULL,
        name TEXT NOT NULL
    ) STRICT;
    )",
};
constexpr std::int64_t kVersion = std::size(kSteps);

int RunSteps(sqlite3* connection, std::int64_t from) {
    for (std::int64_t step = from; step < kVersion; ++step) {
        if (const int code = Execute(connection, kSteps[step]); code != SQLITE_OK)
            return code;
    }
    const std::string marks = "PRAGMA application_id=" + std::to_string(kApplicationID) +
                              ";PRAGMA user_version=" + std::to_string(kVersion);
    return Execute(connection, marks.c_str());
}

/// What the file says of itself; `code` is SQLITE_OK where it could be read.
struct FileMarks {
    int code;
    std::int64_t version;
    std::int64_t application;
    bool isEmpty;
};

FileMarks ReadMarks(sqlite3* connection) {
    Statement version(connection, "PRAGMA user_version");
    const int code = version.Step();
    if (code != SQLITE_ROW)
        return {code, 0, 0, false};
    FileMarks marks{SQLITE_OK, version.Integer(0), 0, false};
    marks.application = QueryInteger(connection, "PRAGMA application_id", 0);
    if (marks.version == 0)
        marks.isEmpty = QueryInteger(connection, "SELECT count(*) FROM sqlite_schema", 1) == 0;
    return marks;
}

std::int32_t BigEndian(const unsigned char* bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8U | bytes[i];
    return static_cast<std::int32_t>(value);
}

/// The same from the file's first page (https://sqlite.org/fileformat2.html, 1.3 and 1.6), which
/// lays nothing beside it. Nothing where the file is new or has a journal, which may hold another
/// first page.
std::optional<FileMarks> ReadFirstPage(sqlite3* connection, const std::filesystem::path& path) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    const bool isNew = !IsFilled(path); // SQLite itself takes one byte for none
    const bool hasJournal = IsFilled(With(path, "-wal")) || IsFilled(With(path, "-journal"));
    if (!file || !file->pMethods || isNew || hasJournal)
        return std::nullopt;
    std::array<unsigned char, 105> page{};
    file->pMethods->xRead(file, page.data(), page.size(), 0); // a short file leaves zeros
    if (std::memcmp(page.data(), "SQLite format 3", 16) != 0)
        return FileMarks{SQLITE_NOTADB, 0, 0, false};
    const bool hasNoTable = page[100] == 0x0D && page[103] == 0 && page[104] == 0;
    return FileMarks{SQLITE_OK, BigEndian(&page[60]), BigEndian(&page[68]), hasNoTable};
}

DatabaseProblem CheckMarks(const FileMarks& marks, const std::filesystem::path& path) {
    if (marks.code != SQLITE_OK)
        return ProblemOf(marks.code, path);
    if (marks.isEmpty && marks.version == 0)
        return {};
    if (marks.application != kApplicationID)
        return {kKestrinMIDIDatabaseForeign,
                Sentence("The file %1 is a database of some other program.", path)};
    if (marks.version < 0)
        return ProblemOf(SQLITE_CORRUPT, path);
    if (marks.version > kVersion)
        return {kKestrinMIDIDatabaseNewer,
                Sentence("The MIDI database %1 was written by a newer version (%2).", path,
                         "schema " + std::to_string(marks.version) + ", this version knows " +
                             std::to_string(kVersion))};
    return {};
}

/// The journal mode after asking for WAL; empty, and an error in `code`, if that failed.
std::string AskForWAL(sqlite3* connection, int& code) {
    Statement query(connection, "PRAGMA journal_mode=WAL");
    code = query.Step();
    return code == SQLITE_ROW ? std::string(query.Bytes(0)) : std::string();
}

int ConfigureForWriting(sqlite3* connection, bool& isWAL) {
    int code = SQLITE_OK;
    std::string mode = AskForWAL(connection, code);
    // SQLite does not wait on its own when another process switches the mode at the same moment.
    for (int tries = 0; (code & 0xFF) == SQLITE_BUSY && WaitForLock(tries); ++tries)
        mode = AskForWAL(connection, code);
    if (code != SQLITE_ROW)
        return code;
    isWAL = mode == "wal";
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr);
    // NORMAL would write the log to the disk at checkpoints only: a power cut would take back what
    // was confirmed since.
    return Execute(connection, "PRAGMA synchronous=FULL");
}

DatabaseProblem Migrate(sqlite3* connection, const std::filesystem::path& path) {
    if (const int code = Execute(connection, "BEGIN IMMEDIATE"); code != SQLITE_OK)
        return ProblemOf(code, path);
    // Another process may have done it meanwhile, a newer one even more.
    const FileMarks marks = ReadMarks(connection);
    DatabaseProblem problem = CheckMarks(marks, path);
    if (problem.state == kKestrinMIDIDatabaseReady)
        problem = ProblemOf(RunSteps(connection, marks.version), path);
    if (problem.state == kKestrinMIDIDatabaseReady)
        problem = ProblemOf(Execute(connection, "COMMIT"), path);
    if (problem.state != kKestrinMIDIDatabaseReady)
        Execute(connection, "ROLLBACK");
    return problem;
}

} // namespace

SchemaResult PrepareSchema(sqlite3* connection, const std::filesystem::path& path) {
    SchemaResult result;
    if (const std::optional<FileMarks> marks = ReadFirstPage(connection, path))
        result.problem = CheckMarks(*marks, path);
    if (result.problem.state != kKestrinMIDIDatabaseReady)
        return result;
    const FileMarks marks = ReadMarks(connection);
    result.problem = CheckMarks(marks, path);
    if (result.problem.state != kKestrinMIDIDatabaseReady)
        return result;
    // Where the file may be written, its header has a number that no version of SQLite wrote.
    if (sqlite3_db_readonly(connection, "main") == 1)
        return {
            ProblemOf(access(path.c_str(), W_OK) == 0 ? SQLITE_CORRUPT : SQLITE_READONLY, path)};
    int code = ConfigureForWriting(connection, result.isWAL);
    if (code == SQLITE_OK && marks.version < kVersion)
        return {Migrate(connection, path), result.isWAL};
    result.problem = ProblemOf(code, path);
    return result;
}

} // namespace KestrinMIDI
