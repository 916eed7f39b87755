#include "Surfaces/PlacedSurfaces.h"

#include "bench/tools/surface-ports/MemorySequencer.h"
#include "tests/fuzz/Require.h"
#include "tools/surface-ports/AlsaSequencer.h"
#include "tools/surface-ports/PortKeeper.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <map>

// The bytes are what happens to surface-ports: units are placed, plugged and unplugged, ports wired
// to each other, and events come from both sides. Each event reaches the other end of its unit,
// whole and in order, and nobody else hears anything.

using namespace SurfacePorts;
using MemorySequencer::Event;
using MemorySequencer::Place;

namespace {

constexpr int kUnits = 4;
constexpr int kGroups = 3;

Plan PlanIn(FuzzedDataProvider& bytes) {
    std::map<SInt32, Group> groups;
    for (int number = 0; number < kUnits; ++number) {
        const SInt32 group = bytes.ConsumeIntegralInRange(0, kGroups);
        const bool isFirst = bytes.ConsumeBool();
        const Address address{16 + number + (bytes.ConsumeBool() ? kUnits : 0), 0};
        Unit unit{number + 1, "Unit", {}, {}};
        if (bytes.ConsumeBool())
            unit.from = address;
        if (bytes.ConsumeBool())
            unit.to = address;
        std::vector<Unit>& units = groups[group].units;
        units.insert(isFirst ? units.begin() : units.end(), unit);
        groups[group].number = group;
    }
    Plan plan;
    for (const auto& [number, group] : groups) {
        if (number < kGroups) // the others have no place
            plan.push_back(group);
    }
    return plan;
}

Event EventIn(FuzzedDataProvider& bytes) {
    Event event;
    event.head.type =
        bytes.ConsumeBool() ? SND_SEQ_EVENT_SYSEX : bytes.ConsumeIntegral<std::uint8_t>();
    event.head.queue = bytes.ConsumeIntegral<std::uint8_t>();
    event.head.data.control.value = bytes.ConsumeIntegral<int>();
    if (event.head.type >= SND_SEQ_EVENT_SYSEX) {
        snd_seq_ev_set_variable(&event.head, 0, nullptr);
        event.bytes = bytes.ConsumeRandomLengthString(12);
    }
    return event;
}

bool IsPassed(const Event& event) {
    return event.head.type == SND_SEQ_EVENT_SYSEX ||
           (event.head.type >= SND_SEQ_EVENT_NOTE && event.head.type <= SND_SEQ_EVENT_SENSING);
}

std::string Told(const Event& event) {
    const auto* const data = reinterpret_cast<const char*>(&event.head.data);
    return static_cast<char>(event.head.type) + (snd_seq_ev_is_variable(&event.head)
                                                     ? event.bytes
                                                     : std::string(data, sizeof event.head.data));
}

class Studio {
public:
    Studio() {
        MemorySequencer::Hear([this](const Place& place, const Event& event) {
            Require(snd_seq_ev_is_direct(&event.head), "an event does not wait in a queue");
            fHeard[place].push_back(Told(event));
        });
    }
    ~Studio() { MemorySequencer::Hear({}); }

    void Step(FuzzedDataProvider& bytes) {
        const int kind = bytes.ConsumeIntegralInRange(0, 9);
        if (kind == 0 || fPlan.empty())
            return Keep(PlanIn(bytes));
        const Group& group = fPlan[bytes.ConsumeIntegralInRange<std::size_t>(0, fPlan.size() - 1)];
        const int place = bytes.ConsumeIntegralInRange(0, static_cast<int>(group.units.size()) - 1);
        const Unit& unit = group.units[static_cast<std::size_t>(place)];
        const Place port{ClientOf(group.number), place};
        if (kind == 1) {
            const Group& other =
                fPlan[bytes.ConsumeIntegralInRange<std::size_t>(0, fPlan.size() - 1)];
            MemorySequencer::Connect(port, {ClientOf(other.number), 0});
        } else if (kind < 6) {
            FromMixer(port, unit, EventIn(bytes));
        } else {
            FromUnit(port, unit, EventIn(bytes));
        }
    }

    void AwaitQuiet() {
        MemorySequencer::Settle();
        Require(fHeard == fExpected, "each hears its own, in order");
    }

private:
    void Keep(const Plan& plan) {
        AwaitQuiet();
        fPlan = plan;
        Require(fKeeper.Keep(plan).empty(), "there is room for all");
    }

    static int ClientOf(SInt32 group) {
        const int client = MemorySequencer::ClientNamed(SurfaceClientName(group));
        Require(client != 0, "a group has a client");
        return client;
    }

    void FromMixer(const Place& port, const Unit& unit, Event event) {
        if (IsPassed(event) && unit.to)
            fExpected[{unit.to->client, unit.to->port}].push_back(Told(event));
        MemorySequencer::Send(port, std::move(event));
    }

    void FromUnit(const Place& port, const Unit& unit, Event event) {
        if (!unit.from)
            return;
        if (IsPassed(event))
            fExpected[MemorySequencer::ListenerTo(port)].push_back(Told(event));
        MemorySequencer::Emit({unit.from->client, unit.from->port}, std::move(event));
    }

    std::unique_ptr<Sequencer> fSequencer = OpenSequencer();
    PortKeeper fKeeper{*fSequencer};
    Plan fPlan;
    std::map<Place, std::vector<std::string>> fHeard;
    std::map<Place, std::vector<std::string>> fExpected;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider bytes(data, size);
    Studio studio;
    while (bytes.remaining_bytes() > 0)
        studio.Step(bytes);
    studio.AwaitQuiet();
    return 0;
}
