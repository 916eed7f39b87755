// Surfaces that are cabled to interfaces: opening their database, finding them and giving each its
// place, reading a setting, storing all. Beside each, plain SQLite doing the like with the same
// file.

#include "Surfaces/MidiObject.h"
#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"

#include "Platform/CoreMIDI/Store/SQLite.h"
#include "bench/Surfaces/CabledStudio.h"

#include <benchmark/benchmark.h>

#include <vector>

using namespace KestrinMIDI;

namespace {

constexpr int kSurfaces = 1000;

/// A connection of its own to the file, set up as the service's.
ConnectionHolder ConnectTo(const std::filesystem::path& file) {
    sqlite3* connection = nullptr;
    sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                    nullptr);
    Execute(connection, "PRAGMA synchronous=FULL;PRAGMA foreign_keys=ON");
    return ConnectionHolder(connection);
}

struct Row {
    std::int64_t object;
    std::int64_t type;
    std::int64_t uniqueID;
    std::string key;
    std::string value;
};

/// Every object's every property, as plain values.
std::vector<Row> ReadRows(sqlite3* connection) {
    Statement query(connection, "SELECT id,type,unique_id,key,value FROM objects "
                                "LEFT JOIN properties ON object=id");
    std::vector<Row> rows;
    while (query.Step() == SQLITE_ROW)
        rows.push_back({query.Integer(0), query.Integer(1), query.Integer(2),
                        std::string(query.Bytes(3)), std::string(query.Bytes(4))});
    return rows;
}

// First use: opening the file until its objects are there.

void FirstUseOurs(benchmark::State& state, int surfaces) {
    for (auto _ : state) {
        state.PauseTiming();
        UseCabledStudio(surfaces);
        state.ResumeTiming();
        benchmark::DoNotOptimize(MIDIGetNumberOfSources());
    }
}

void FirstUseWithSQLite(benchmark::State& state, int surfaces) {
    const std::filesystem::path file = UseCabledStudio(surfaces);
    for (auto _ : state) {
        ConnectionHolder connection = ConnectTo(file);
        std::vector<Row> rows = ReadRows(connection.get());
        benchmark::DoNotOptimize(rows.data());
        state.PauseTiming();
        connection.reset();
        rows.clear();
        state.ResumeTiming();
    }
}

// Scan: finding and normalising the surfaces, beside reading the rows that say where they are.

void ScanOurs(benchmark::State& state, int surfaces) {
    UseCabledStudio(surfaces);
    std::vector<MidiDevice> found;
    for (auto _ : state) {
        GetAvailableDevices(found);
        NormaliseGroupPositions(found);
    }
    if (found.size() != static_cast<std::size_t>(surfaces))
        state.SkipWithError("not all surfaces were found");
}

void ScanWithSQLite(benchmark::State& state, int surfaces) {
    const ConnectionHolder connection = ConnectTo(UseCabledStudio(surfaces));
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadRows(connection.get()).data());
}

// One property after the first, as a mixer reads them.

void PropertyOurs(benchmark::State& state) {
    UseCabledStudio(kSurfaces);
    const MIDIDeviceRef device = MIDIGetExternalDevice(7);
    SInt32 value = 0;
    for (auto _ : state) {
        MIDIObjectGetIntegerProperty(device, CFSTR("com_velt_sorvex_control_surface_groupid"),
                                     &value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(PropertyOurs)->Name("Property/ours");

void PropertyWithSQLite(benchmark::State& state) {
    const ConnectionHolder connection = ConnectTo(UseCabledStudio(kSurfaces));
    const MIDIDeviceRef device = MIDIGetExternalDevice(7);
    Execute(connection.get(), "BEGIN");
    Statement query(connection.get(), "SELECT value FROM properties WHERE object=? AND key=?");
    for (auto _ : state) {
        query.BindInteger(1, device);
        query.BindText(2, kGroupIDKey);
        query.Step();
        benchmark::DoNotOptimize(query.Integer(0));
        query.Reset();
    }
    Execute(connection.get(), "COMMIT");
}
BENCHMARK(PropertyWithSQLite)->Name("Property/SQLite");

// Ok: two integers of every surface, in one transaction.

void OkOurs(benchmark::State& state) {
    UseCabledStudio(kSurfaces);
    std::vector<MidiDevice> surfaces;
    GetAvailableDevices(surfaces);
    SInt32 value = 0;
    for (auto _ : state) {
        ++value;
        for (MidiDevice& surface : surfaces)
            surface.groupID = surface.groupPosition = value;
        WriteGroupSettings(surfaces);
    }
}
BENCHMARK(OkOurs)->Name("Ok/1000/ours");

void OkWithSQLite(benchmark::State& state) {
    const ConnectionHolder connection = ConnectTo(UseCabledStudio(kSurfaces));
    std::vector<MIDIObjectRef> surfaces;
    for (ItemCount i = 0; i < MIDIGetNumberOfExternalDevices(); ++i)
        surfaces.push_back(MIDIGetExternalDevice(i));
    Statement write(connection.get(), "UPDATE properties SET value=? WHERE object=? AND key=?");
    std::int64_t value = 0;
    for (auto _ : state) {
        ++value;
        Execute(connection.get(), "BEGIN IMMEDIATE");
        for (const MIDIObjectRef surface : surfaces) {
            for (const char* const key : {kGroupPositionKey, kGroupIDKey}) {
                write.BindInteger(1, value);
                write.BindInteger(2, surface);
                write.BindText(3, key);
                write.Run();
            }
        }
        Execute(connection.get(), "COMMIT");
    }
}
BENCHMARK(OkWithSQLite)->Name("Ok/1000/SQLite");

using SizedBenchmark = void (*)(benchmark::State&, int surfaces);

/// Cells of 10 to 10,000 surfaces.
void RegisterBySize(const std::string& name, SizedBenchmark ours, SizedBenchmark peer) {
    for (int surfaces = 10; surfaces <= 10000; surfaces *= 10) {
        const std::string cell = name + "/" + std::to_string(surfaces);
        benchmark::RegisterBenchmark((cell + "/ours").c_str(), ours, surfaces);
        benchmark::RegisterBenchmark((cell + "/SQLite").c_str(), peer, surfaces);
    }
}

[[maybe_unused]] const bool kRegistered = [] {
    RegisterBySize("FirstUse", FirstUseOurs, FirstUseWithSQLite);
    RegisterBySize("Scan", ScanOurs, ScanWithSQLite);
    return true;
}();

} // namespace
