// Finding surfaces that are cabled to interfaces, and giving each its place. The scan stands beside
// reading all that the database has of the studio, with one plain SELECT into a vector.

#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"

#include "bench/Surfaces/CabledStudio.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

void ScanOurs(benchmark::State& state, int surfaces) {
    UseCabledStudio(surfaces);
    std::vector<MidiDevice> devices;
    for (auto _ : state)
        GetAvailableDevices(devices);
    if (devices.size() != static_cast<std::size_t>(surfaces))
        state.SkipWithError("not all surfaces were found");
}

struct Row {
    std::int64_t object = 0;
    std::int64_t type = 0;
    std::int64_t uniqueID = 0;
    std::string key;
    std::string value;
};

/// Every property of every object.
std::vector<Row> ReadRows(sqlite3* connection) {
    sqlite3_stmt* query = nullptr;
    sqlite3_prepare_v2(connection,
                       "SELECT id, type, unique_id, key, value FROM objects "
                       "LEFT JOIN properties ON object = id",
                       -1, &query, nullptr);
    const auto bytes = [query](int column) {
        const auto* data = static_cast<const char*>(sqlite3_column_blob(query, column));
        return std::string(data, static_cast<std::size_t>(sqlite3_column_bytes(query, column)));
    };
    std::vector<Row> rows;
    while (sqlite3_step(query) == SQLITE_ROW)
        rows.push_back({sqlite3_column_int64(query, 0), sqlite3_column_int64(query, 1),
                        sqlite3_column_int64(query, 2), bytes(3), bytes(4)});
    sqlite3_finalize(query);
    return rows;
}

void ScanWithSQLite(benchmark::State& state, int surfaces) {
    const std::string file = UseCabledStudio(surfaces);
    sqlite3* connection = nullptr;
    sqlite3_open(file.c_str(), &connection);
    for (auto _ : state) {
        const std::vector<Row> rows = ReadRows(connection);
        if (rows.size() < static_cast<std::size_t>(surfaces))
            state.SkipWithError("the rows were not read");
    }
    sqlite3_close(connection);
}

void NormaliseOurs(benchmark::State& state, int surfaces) {
    UseCabledStudio(surfaces);
    std::vector<MidiDevice> found;
    GetAvailableDevices(found);
    std::vector<MidiDevice> devices;
    for (auto _ : state) {
        devices = found;
        NormaliseGroupPositions(devices);
        benchmark::DoNotOptimize(devices.data());
    }
}

void Register(int surfaces) {
    const std::string size = "/" + std::to_string(surfaces);
    benchmark::RegisterBenchmark(("CabledScan" + size + "/ours").c_str(), ScanOurs, surfaces);
    benchmark::RegisterBenchmark(("CabledScan" + size + "/SQLite").c_str(), ScanWithSQLite,
                                 surfaces);
    benchmark::RegisterBenchmark(("Normalise" + size + "/ours").c_str(), NormaliseOurs, surfaces);
}

[[maybe_unused]] const bool kRegistered = [] {
    for (int surfaces = 10; surfaces <= 10000; surfaces *= 10)
        Register(surfaces);
    return true;
}();

} // namespace
