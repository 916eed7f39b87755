#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace KestrinMIDI {

/// Closes a connection however it was opened.
struct ConnectionCloser {
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using ConnectionHolder = std::unique_ptr<sqlite3, ConnectionCloser>;

/// Runs one or more statements without results; returns SQLite's code.
int Execute(sqlite3* connection, const char* sql);

/// A prepared statement. Parameters count from 1, columns from 0. Texts and data that are bound
/// must outlive the next Step or Reset.
class Statement {
public:
    /// Code() tells whether the text could be prepared; an unprepared statement's Step answers with
    /// the same code.
    Statement(sqlite3* connection, std::string_view sql, unsigned int flags = 0);

    int Code() const { return fCode; }

    // Running

    void BindInteger(int parameter, std::int64_t value);
    void BindText(int parameter, std::string_view text);
    void BindData(int parameter, std::string_view bytes);
    void BindNull(int parameter);
    /// SQLITE_ROW, SQLITE_DONE or an extended error code.
    int Step();
    void Reset();
    /// Steps a statement without results and resets it: SQLITE_OK or an extended error code.
    int Run();

    // The current row

    int Type(int column) const { return sqlite3_column_type(fStatement.get(), column); }
    bool IsNull(int column) const { return Type(column) == SQLITE_NULL; }
    std::int64_t Integer(int column) const {
        return sqlite3_column_int64(fStatement.get(), column);
    }
    /// How long its texts and data are together.
    std::size_t Size() const;
    /// The bytes of a text or of data, valid until the next Step or Reset.
    std::string_view Bytes(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    std::unique_ptr<sqlite3_stmt, Finalizer> fStatement;
    int fCode = SQLITE_OK;
};

/// The first column of the first row, or `fallback` where there is none.
std::int64_t QueryInteger(sqlite3* connection, const char* sql, std::int64_t fallback);

} // namespace KestrinMIDI
