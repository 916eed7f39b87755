#include "Platform/CoreMIDI/Store/Schema.h"

#include "Platform/CoreMIDI/Store/LockPatience.h"

#include <iterator>
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

DatabaseProblem CheckMarks(const FileMarks& marks, const std::filesystem::path& path) {
    if (marks.code != SQLITE_OK)
        return ProblemOf(marks.code, path);
    if (marks.isEmpty && marks.version == 0)
        return {};
    if (marks.application != kApplicationID)
        return {kKestrinMIDIDatabaseForeign,
                "The file " + path.string() + " is a database of some other program."};
    if (marks.version > kVersion)
        return {kKestrinMIDIDatabaseNewer,
                "The MIDI database " + path.string() + " was written by a newer version (schema " +
                    std::to_string(marks.version) + ", this version knows " +
                    std::to_string(kVersion) + ")."};
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

int Migrate(sqlite3* connection) {
    if (const int code = Execute(connection, "BEGIN IMMEDIATE"); code != SQLITE_OK)
        return code;
    // Another process may have done it meanwhile.
    const FileMarks marks = ReadMarks(connection);
    int code = marks.code != SQLITE_OK ? marks.code : RunSteps(connection, marks.version);
    if (code == SQLITE_OK)
        code = Execute(connection, "COMMIT");
    if (code != SQLITE_OK)
        Execute(connection, "ROLLBACK");
    return code;
}

} // namespace

SchemaResult PrepareSchema(sqlite3* connection, const std::filesystem::path& path) {
    const FileMarks marks = ReadMarks(connection);
    SchemaResult result{CheckMarks(marks, path)};
    if (result.problem.state != kKestrinMIDIDatabaseReady)
        return result;
    if (sqlite3_db_readonly(connection, "main") == 1)
        return {ProblemOf(SQLITE_READONLY, path)};
    int code = ConfigureForWriting(connection, result.isWAL);
    if (code == SQLITE_OK && marks.version < kVersion)
        code = Migrate(connection);
    result.problem = ProblemOf(code, path);
    return result;
}

} // namespace KestrinMIDI
