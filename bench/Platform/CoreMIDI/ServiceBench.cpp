// The MIDI service beside plain SQLite doing the like with the same file.

#include "Surfaces/SurfaceDiscovery.h"
#include "Surfaces/SurfaceGroups.h"

#include "bench/Platform/CoreMIDI/Studio.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int kOkSurfaces = 1000;

struct Row {
    std::int64_t object;
    std::int64_t type;
    std::int64_t uniqueID;
    std::string key;
    std::string text;
    std::int64_t number;
};

/// Every object's every property, as plain values.
std::vector<Row> ReadRows(sqlite3* connection) {
    Statement query(connection, "SELECT o.id,o.type,o.unique_id,p.key,p.value FROM objects o "
                                "LEFT JOIN properties p ON p.object=o.id");
    std::vector<Row> rows;
    while (query.Step() == SQLITE_ROW) {
        const bool isText = query.Type(4) == SQLITE_TEXT;
        rows.push_back(
            {query.Integer(0), query.Integer(1), query.Integer(2), std::string(query.Bytes(3)),
             isText ? std::string(query.Bytes(4)) : std::string(), isText ? 0 : query.Integer(4)});
    }
    return rows;
}

// First use: opening the file until its objects are there.

void FirstUseOurs(benchmark::State& state, int surfaces) {
    for (auto _ : state) {
        state.PauseTiming();
        UseStudio(surfaces);
        state.ResumeTiming();
        benchmark::DoNotOptimize(MIDIGetNumberOfSources());
    }
}

void FirstUseWithSQLite(benchmark::State& state, int surfaces) {
    const std::string& file = StudioFile(surfaces);
    MIDIRestart(); // so that each open finds the file as ours does: closed
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
    UseStudio(surfaces);
    std::vector<MidiDevice> first;
    GetAvailableDevices(first); // the first use is a cell of its own
    for (auto _ : state) {
        std::vector<MidiDevice> found;
        GetAvailableDevices(found);
        NormaliseGroupPositions(found);
        if (found.size() != static_cast<std::size_t>(surfaces))
            state.SkipWithError("not all surfaces were found");
    }
}

void ScanWithSQLite(benchmark::State& state, int surfaces) {
    const ConnectionHolder connection = ConnectTo(StudioFile(surfaces));
    for (auto _ : state) {
        const std::vector<Row> rows = ReadRows(connection.get());
        benchmark::DoNotOptimize(rows.data());
    }
}

// One property after the first, as a mixer reads them.

void PropertyOurs(benchmark::State& state) {
    UseStudio(kOkSurfaces);
    const MIDIDeviceRef device = MIDIGetDevice(7);
    SInt32 value = 0;
    for (auto _ : state) {
        MIDIObjectGetIntegerProperty(device, CFSTR("com_velt_sorvex_control_surface_groupid"),
                                     &value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(PropertyOurs)->Name("Property/Integer/ours");

void PropertyWithSQLite(benchmark::State& state) {
    const ConnectionHolder connection = ConnectTo(StudioFile(kOkSurfaces));
    Execute(connection.get(), "BEGIN");
    Statement query(connection.get(), "SELECT value FROM properties WHERE object=? AND key=?");
    for (auto _ : state) {
        query.BindInteger(1, 29);
        query.BindText(2, "com_velt_sorvex_control_surface_groupid");
        query.Step();
        benchmark::DoNotOptimize(query.Integer(0));
        query.Reset();
    }
    Execute(connection.get(), "COMMIT");
}
BENCHMARK(PropertyWithSQLite)->Name("Property/Integer/SQLite");

void InheritedTextOurs(benchmark::State& state) {
    UseStudio(kOkSurfaces);
    const MIDIEndpointRef source = MIDIGetSource(7);
    for (auto _ : state) {
        CFStringRef text = nullptr;
        MIDIObjectGetStringProperty(source, kMIDIPropertyModel, &text);
        CFRelease(text);
    }
}
BENCHMARK(InheritedTextOurs)->Name("Property/InheritedText/ours");

// Ok: two integers of every surface, each in a transaction of its own.

void OkOurs(benchmark::State& state) {
    UseStudio(kOkSurfaces);
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
BENCHMARK(OkOurs)->Name("Ok/1000/ours")->Unit(benchmark::kMillisecond);

void OkWithSQLite(benchmark::State& state) {
    const ConnectionHolder connection = ConnectTo(StudioFile(kOkSurfaces));
    Statement write(connection.get(), "UPDATE properties SET value=? WHERE object=? AND key=?");
    std::int64_t value = 0;
    for (auto _ : state) {
        ++value;
        for (std::int64_t surface = 0; surface < kOkSurfaces; ++surface) {
            for (const char* const key : {"com_velt_sorvex_control_surface_grouppos",
                                          "com_velt_sorvex_control_surface_groupid"}) {
                write.BindInteger(1, value);
                write.BindInteger(2, 1 + 4 * surface);
                write.BindText(3, key);
                write.Run();
            }
        }
    }
}
BENCHMARK(OkWithSQLite)->Name("Ok/1000/SQLite")->Unit(benchmark::kMillisecond);

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
