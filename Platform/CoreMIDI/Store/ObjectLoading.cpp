#include "Platform/CoreMIDI/Store/ObjectLoading.h"

#include <set>
#include <string>
#include <utility>

namespace KestrinMIDI {

namespace {

/// Where the rows go.
struct Target {
    KeyTable& keys;
    ObjectStore& store;
    std::uint64_t budget; ///< how many bytes may still be taken
    std::size_t lost = 0;
};

/// One table's rows: how they are asked for and what takes one in (false: it makes no sense).
struct Table {
    const char* columns;
    const char* name;
    const char* order;
    bool (*take)(const Statement& row, Target& target);
};

template <typename Integer>
bool Fits(const Statement& row, int column) {
    return row.Type(column) == SQLITE_INTEGER && std::in_range<Integer>(row.Integer(column));
}

bool IsShortText(const Statement& row, int column) {
    return row.Type(column) == SQLITE_TEXT && row.Bytes(column).size() <= kLongestValue;
}

bool IsObjectRow(const Statement& row) {
    return Fits<MIDIObjectRef>(row, 0) && Fits<MIDIObjectType>(row, 1) &&
           (row.IsNull(2) || Fits<MIDIObjectRef>(row, 2)) && row.Type(3) == SQLITE_INTEGER &&
           Fits<MIDIUniqueID>(row, 4) && (row.IsNull(5) || row.Type(5) == SQLITE_INTEGER);
}

bool TakeObject(const Statement& row, Target& target) {
    if (!IsObjectRow(row))
        return false;
    auto object = std::make_unique<StoredObject>();
    object->ref = static_cast<MIDIObjectRef>(row.Integer(0));
    object->type = static_cast<MIDIObjectType>(row.Integer(1));
    object->ownerRef = static_cast<MIDIObjectRef>(row.IsNull(2) ? 0 : row.Integer(2));
    object->position = row.Integer(3);
    object->uniqueID = static_cast<MIDIUniqueID>(row.Integer(4));
    if (!row.IsNull(5))
        object->pendingSince = row.Integer(5);
    return target.store.Insert(std::move(object));
}

std::optional<PropertyValue> ValueOf(const Statement& row, int column) {
    const int type = row.Type(column);
    if (type == SQLITE_INTEGER && Fits<SInt32>(row, column))
        return PropertyValue::OfInteger(static_cast<SInt32>(row.Integer(column)));
    if (type != SQLITE_TEXT && type != SQLITE_BLOB)
        return std::nullopt;
    const std::string_view bytes = row.Bytes(column);
    if (bytes.size() > kLongestValue)
        return std::nullopt;
    return type == SQLITE_TEXT ? PropertyValue::OfString(bytes) : PropertyValue::OfData(bytes);
}

StoredObject* ObjectOf(const Statement& row, ObjectStore& store) {
    return Fits<MIDIObjectRef>(row, 0) ? store.Find(static_cast<MIDIObjectRef>(row.Integer(0)))
                                       : nullptr;
}

bool TakeProperty(const Statement& row, Target& target) {
    StoredObject* const object = ObjectOf(row, target.store);
    if (!object || !IsShortText(row, 1) || object->properties.size() >= kMostProperties)
        return false;
    std::optional<PropertyValue> value = ValueOf(row, 2);
    const PropertyKey key = target.keys.NumberOf(row.Bytes(1));
    if (!value || key == KeyTable::kUniqueID || object->Own(key))
        return false;
    object->properties.push_back({key, std::move(*value)});
    return true;
}

bool TakeHardware(const Statement& row, Target& target) {
    StoredObject* const object = ObjectOf(row, target.store);
    for (int column = 1; column <= 5; ++column) {
        if (!object || object->hardware || !IsShortText(row, column))
            return false;
    }
    const auto text = [&row](int column) { return std::string(row.Bytes(column)); };
    object->hardware = std::make_unique<HardwareRecord>(
        HardwareRecord{text(1), text(2), text(3), text(4), text(5)});
    return true;
}

// Objects come first: the others are kept with them.
constexpr Table kTables[] = {
    {"id,type,owner,position,unique_id,pending_since", "objects", "id", TakeObject},
    {"object,key,value", "properties", "object", TakeProperty},
    {"object,kind,serial,place,manufacturer,name", "hardware", "object", TakeHardware},
};

std::string SelectFrom(const Table& table) {
    return std::string("SELECT ") + table.columns + " FROM " + table.name;
}

void TakeRow(const Table& table, const Statement& row, Target& target) {
    const std::size_t size = row.Size();
    const bool isTaken = size <= target.budget && table.take(row, target);
    target.budget -= isTaken ? size : 0;
    target.lost += isTaken ? 0 : 1;
}

/// Values can't be longer together than the file that they stand in, but for UTF-16 that becomes
/// UTF-8: more is computed, by columns of the file's own.
std::uint64_t Budget(sqlite3* connection) {
    const std::int64_t pages = QueryInteger(connection, "PRAGMA page_count", 0);
    return 2 * static_cast<std::uint64_t>(pages) * QueryInteger(connection, "PRAGMA page_size", 0);
}

/// Reads one table to its end or to the first error.
int ReadTable(sqlite3* connection, const Table& table, const char* direction, Target& target) {
    const std::string order = *direction ? std::string(" ORDER BY ") + table.order + direction : "";
    Statement query(connection, SelectFrom(table) + order);
    int code;
    while ((code = query.Step()) == SQLITE_ROW)
        TakeRow(table, query, target);
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

/// Reads the properties one at a time, passing over the values that are too big to be read at all.
int ReadPropertiesSingly(sqlite3* connection, const Table& table, Target& target) {
    Statement list(connection, "SELECT object,key FROM properties");
    Statement single(connection,
                     "SELECT object,key,value FROM properties WHERE object=? AND key=?");
    int code;
    while ((code = list.Step()) == SQLITE_ROW) {
        if (list.Type(0) != SQLITE_INTEGER || !IsShortText(list, 1))
            continue;
        single.BindInteger(1, list.Integer(0));
        single.BindText(2, list.Bytes(1));
        if (single.Step() == SQLITE_ROW)
            TakeRow(table, single, target);
        else
            ++target.lost;
        single.Reset();
    }
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

int ReadTables(sqlite3* connection, Target& target) {
    for (const Table& table : kTables) {
        int code = ReadTable(connection, table, "", target);
        if (code == SQLITE_TOOBIG && table.take == TakeProperty)
            code = ReadPropertiesSingly(connection, table, target);
        if (code != SQLITE_OK)
            return code;
    }
    return SQLITE_OK;
}

using References = std::set<std::int64_t>;

/// The objects that are known of: from their table and from its index, which stands apart from it.
References KnownObjects(sqlite3* connection) {
    References found;
    for (const char* const order : {"id", "id DESC", "unique_id", "unique_id DESC"}) {
        Statement query(connection, std::string("SELECT id FROM objects ORDER BY ") + order);
        while (query.Step() == SQLITE_ROW)
            found.insert(query.Integer(0));
    }
    return found;
}

/// Reads forward to the damage, backward to it, and object by object what stands between further
/// ones. The objects whose rows can't be read come into `unreadable`.
void SalvageTable(sqlite3* connection, const Table& table, const References& objects,
                  Target& target, References& unreadable) {
    if (ReadTable(connection, table, " ASC", target) == SQLITE_OK)
        return;
    const std::size_t lost = target.lost; // what is met again is no further loss
    ReadTable(connection, table, " DESC", target);
    Statement single(connection, SelectFrom(table) + " WHERE " + table.order + "=?");
    for (const std::int64_t object : objects) {
        single.BindInteger(1, object);
        int code;
        while ((code = single.Step()) == SQLITE_ROW)
            TakeRow(table, single, target);
        single.Reset();
        if (code != SQLITE_DONE)
            unreadable.insert(object);
    }
    target.lost = lost;
}

} // namespace

LoadResult LoadObjects(sqlite3* connection, KeyTable& keys, ObjectStore& store) {
    const bool begins = sqlite3_get_autocommit(connection) != 0;
    if (begins) {
        if (const int code = Execute(connection, "BEGIN"); code != SQLITE_OK)
            return {code, 0};
    }
    Target target{keys, store, Budget(connection)};
    const int code = ReadTables(connection, target);
    if (begins)
        Execute(connection, "COMMIT");
    return {code, target.lost + store.LinkAll()};
}

SalvageResult SalvageObjects(sqlite3* connection, KeyTable& keys, ObjectStore& store) {
    Target target{keys, store, Budget(connection)};
    const References objects = KnownObjects(connection);
    References unreadable;
    for (const Table& table : kTables)
        SalvageTable(connection, table, objects, target, unreadable);
    return {target.lost + store.LinkAll(), unreadable.size()};
}

} // namespace KestrinMIDI
