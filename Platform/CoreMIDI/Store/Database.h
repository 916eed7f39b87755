#pragma once

#include "Platform/CoreMIDI/Store/SQLite.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace KestrinMIDI {

/// Why a database can't be used: what kind of trouble, and a sentence for a person.
struct DatabaseProblem {
    KestrinMIDIDatabaseState state = kKestrinMIDIDatabaseReady;
    std::string text;
    int code = SQLITE_OK; ///< of a disk that is full or fails
};

/// An English sentence for a person: `pattern` with the path as %1 and, in parentheses, the cause
/// as %2. A program that speaks another language finds the pattern in its table.
std::string Sentence(std::string pattern, const std::filesystem::path& path,
                     const std::string& cause = {});
/// The same for one without places.
constexpr const char* Sentence(const char* whole) {
    return whole;
}

/// The name of the database file that the environment asks for.
std::filesystem::path DatabasePath();

/// What SQLite's error code means for the file at `path`.
DatabaseProblem ProblemOf(int code, const std::filesystem::path& path);

/// The name of what SQLite keeps beside a file.
std::filesystem::path With(const std::filesystem::path& path, std::string_view suffix);
/// Whether there is such a file, with anything in it.
bool IsFilled(const std::filesystem::path& path);

/// Connects to a file of any origin and condition, which may neither run code of its own nor take
/// much memory; makes an empty one where there is none. Closing leaves what stands beside it.
int OpenConnection(const std::filesystem::path& path, ConnectionHolder& connection);

/// The open database file: its connection, its schema, and whether another process changed it.
class Database {
public:
    /// Opens the file, makes it where there is none and brings an older one up to date. Null, and
    /// the reason in `problem`, if that can't be done; the file is then as it was.
    static std::unique_ptr<Database> Open(const std::filesystem::path& path,
                                          DatabaseProblem& problem);

    const std::filesystem::path& Path() const { return fPath; }
    sqlite3* Connection() const { return fConnection.get(); }

    /// A statement that is prepared once and kept. `sql` is a string literal.
    Statement& Prepared(const char* sql);

    // Changes by other processes

    /// Whether another connection committed since the last MarkRead. Where nobody did, this process
    /// included, it costs a comparison of 48 bytes of memory that SQLite shares between processes.
    bool WasChangedByOthers();
    /// Takes the state that a read from now on meets as known. Call it before reading.
    void MarkRead();

    /// Takes a commit of this connection as known. Call it after each, the state before it being
    /// known.
    void NoteOwnCommit();

    /// Whether the name now stands for another file or for none.
    bool HasMoved() const;

    // Ending

    /// Brings what was committed from the log into the file, and closes. SQLite's code of the
    /// former.
    int CloseCleanly();
    /// Closes without writing anything: for a file found to be damaged.
    void CloseUntouched();
    /// Leaves the connection to the process that opened it: closing it in a forked child would undo
    /// the parent's locks.
    void Abandon();

private:
    // The header of SQLite's WAL-index (https://sqlite.org/walformat.html, "The WAL-Index Header").
    // A look at it costs 20 ns, asking with PRAGMA data_version alone 2.8 us, at every call of the
    // service: a start with 1,000 surfaces would take twice as long.
    using Header = std::array<std::uint32_t, 12>;
    static constexpr std::size_t kChangeCounter = 2;

    Database(std::filesystem::path path, ConnectionHolder connection, bool isWAL);
    void FindSharedHeader();
    Header ReadSharedHeader() const;
    std::int64_t ReadVersion();

    std::filesystem::path fPath;
    ConnectionHolder fConnection;
    std::map<const char*, Statement> fStatements;
    const volatile std::uint32_t* fSharedHeader = nullptr;
    Header fKnownHeader{};
    std::int64_t fKnownVersion = -1;
};

} // namespace KestrinMIDI
