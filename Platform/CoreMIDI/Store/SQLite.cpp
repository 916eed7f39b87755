#include "Platform/CoreMIDI/Store/SQLite.h"

#include <cerrno>

namespace KestrinMIDI {

namespace {

/// Where there is no room for what it keeps beside the file, SQLite speaks of a failing disk.
int CodeOf(sqlite3* connection, int code) {
    const bool isFull = (code & 0xFF) == SQLITE_IOERR && sqlite3_system_errno(connection) == ENOSPC;
    return isFull ? SQLITE_FULL : code;
}

} // namespace

int Execute(sqlite3* connection, const char* sql) {
    return CodeOf(connection, sqlite3_exec(connection, sql, nullptr, nullptr, nullptr));
}

Statement::Statement(sqlite3* connection, std::string_view sql, unsigned int flags) {
    sqlite3_stmt* statement = nullptr;
    fCode =
        CodeOf(connection, sqlite3_prepare_v3(connection, sql.data(), static_cast<int>(sql.size()),
                                              flags, &statement, nullptr));
    fStatement.reset(statement);
}

void Statement::BindInteger(int parameter, std::int64_t value) {
    sqlite3_bind_int64(fStatement.get(), parameter, value);
}

void Statement::BindText(int parameter, std::string_view text) {
    // A null pointer would bind NULL, which is not the empty text.
    sqlite3_bind_text64(fStatement.get(), parameter, text.data() ? text.data() : "", text.size(),
                        SQLITE_STATIC, SQLITE_UTF8);
}

void Statement::BindData(int parameter, std::string_view bytes) {
    sqlite3_bind_blob64(fStatement.get(), parameter, bytes.data() ? bytes.data() : "", bytes.size(),
                        SQLITE_STATIC);
}

void Statement::BindNull(int parameter) {
    sqlite3_bind_null(fStatement.get(), parameter);
}

int Statement::Step() {
    if (fCode != SQLITE_OK)
        return fCode;
    return CodeOf(sqlite3_db_handle(fStatement.get()), sqlite3_step(fStatement.get()));
}

void Statement::Reset() {
    sqlite3_reset(fStatement.get());
}

int Statement::Run() {
    const int code = Step();
    Reset();
    return code == SQLITE_DONE || code == SQLITE_ROW ? SQLITE_OK : code;
}

std::string_view Statement::Bytes(int column) const {
    // SQLite asks for the pointer before the length.
    const void* const bytes = Type(column) == SQLITE_BLOB
                                  ? sqlite3_column_blob(fStatement.get(), column)
                                  : sqlite3_column_text(fStatement.get(), column);
    const int length = sqlite3_column_bytes(fStatement.get(), column);
    return bytes ? std::string_view(static_cast<const char*>(bytes), length) : std::string_view();
}

std::size_t Statement::Size() const {
    std::size_t size = 0;
    for (int column = 0; column < sqlite3_column_count(fStatement.get()); ++column) {
        if (Type(column) == SQLITE_TEXT || Type(column) == SQLITE_BLOB)
            size += Bytes(column).size();
    }
    return size;
}

std::int64_t QueryInteger(sqlite3* connection, const char* sql, std::int64_t fallback) {
    Statement query(connection, sql);
    return query.Step() == SQLITE_ROW ? query.Integer(0) : fallback;
}

} // namespace KestrinMIDI
