// load-through SECONDS: what units and a mixer play at once, sent through surface-ports and
// directly between the same ports. Four units move eight faders each, 1,000 events a second both
// ways, beside a stream of meters. The units are ports of the client "Load Units"; the direct
// connection is measured at once, the other when the client "Surfaces 0" has a port for each.
// Prints the median delays side by side, and what the ports add. Fails where either way an event is
// lost or reordered.

#include "examples/rack/Cables.h"
#include "examples/stand-in/SequencerPorts.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kUnits = 4;
constexpr int kStrips = 8;
constexpr int kMeterLevels = 13;
constexpr auto kStep = 1ms;             // an event each way; a meter in every second one
constexpr auto kLongestCatchUp = 100ms; // on a machine that stood still: its load is no burst
constexpr auto kPatience = 60s;

/// What goes one way between one unit and the mixer: what was sent and has not come.
class Stream {
public:
    void Send(Cables& cables, std::size_t port, const MidiBytes& message) {
        {
            const std::lock_guard lock(fMutex);
            fOnTheWay.push_back({message, Clock::now()});
        }
        cables.Send(port, message);
    }

    void Hear(const MidiBytes& message) {
        const Clock::time_point now = Clock::now();
        const std::lock_guard lock(fMutex);
        const auto found = std::find_if(fOnTheWay.begin(), fOnTheWay.end(),
                                        [&](const Sent& sent) { return sent.bytes == message; });
        if (found == fOnTheWay.end()) {
            ++fUnexpected;
            return;
        }
        fDelays.push_back(now - found->time);
        fLost += static_cast<int>(found - fOnTheWay.begin());
        fOnTheWay.erase(fOnTheWay.begin(), found + 1);
    }

    bool HasAll() {
        const std::lock_guard lock(fMutex);
        return fOnTheWay.empty();
    }

    /// Forgets all.
    void CollectInto(std::vector<Clock::duration>& delays, int& lost, int& unexpected) {
        const std::lock_guard lock(fMutex);
        delays.insert(delays.end(), fDelays.begin(), fDelays.end());
        lost += fLost + static_cast<int>(fOnTheWay.size());
        unexpected += fUnexpected;
        fOnTheWay.clear();
        fDelays.clear();
        fLost = fUnexpected = 0;
    }

private:
    struct Sent {
        MidiBytes bytes;
        Clock::time_point time;
    };
    std::mutex fMutex;
    std::deque<Sent> fOnTheWay;
    std::vector<Clock::duration> fDelays;
    int fLost = 0;
    int fUnexpected = 0; ///< came twice, or behind what was sent after it
};

struct Figures {
    std::size_t passed = 0;
    int lost = 0;
    int unexpected = 0;
    double median = 0; ///< microseconds
};

/// One end of the connection; it listens in a thread of its own, as another process would.
class End {
public:
    End(const std::string& client, const std::string& port)
        : fCables(MakeProgramPorts(client, {port + " 1", port + " 2", port + " 3", port + " 4"}))
        , fPorts(AwaitPorts(client, kUnits))
        , fSplitters(kUnits)
        , fStreams(kUnits)
        , fThread([this] { Listen(); }) {}
    ~End() {
        fIsEnding = true;
        fThread.join();
    }

    Cables& Connections() { return *fCables; }
    const std::vector<SequencerPort>& Ports() const { return fPorts; }
    Stream& HeardAt(std::size_t port) { return fStreams[port]; }

private:
    void Listen() {
        std::vector<pollfd> descriptors = fCables->Descriptors();
        while (!fIsEnding) {
            poll(descriptors.data(), descriptors.size(), 100);
            fCables->Receive([this](std::size_t port, std::span<const std::uint8_t> bytes) {
                fSplitters[port].Take(
                    bytes, [&](const MidiBytes& message) { fStreams[port].Hear(message); });
            });
        }
    }

    std::unique_ptr<Cables> fCables;
    std::vector<SequencerPort> fPorts;
    std::vector<MessageSplitter> fSplitters;
    std::deque<Stream> fStreams;
    std::atomic<bool> fIsEnding = false;
    std::thread fThread;
};

MidiBytes FaderMove(int count) {
    return {static_cast<std::uint8_t>(0xE0 | count % kStrips),
            static_cast<std::uint8_t>(count & 0x7F), static_cast<std::uint8_t>(count >> 7 & 0x7F)};
}

MidiBytes Meter(int count) {
    return {0xD0,
            static_cast<std::uint8_t>((count % kStrips) << 4 | count / kStrips % kMeterLevels)};
}

/// Whether it holds within the time that a busy machine may take.
bool Await(const std::function<bool()>& condition) {
    const Clock::time_point end = Clock::now() + kPatience;
    while (!condition() && Clock::now() < end)
        std::this_thread::sleep_for(50ms);
    return condition();
}

/// Sends between the two until all of one round has come: what they are connected by is ready then.
void AwaitPassage(End& units, End& mixer) {
    std::vector<Clock::duration> delays;
    int ignored = 0;
    for (std::size_t port = 0; port < kUnits; ++port) {
        for (auto [from, to] : {std::pair(&units, &mixer), std::pair(&mixer, &units)}) {
            Stream& stream = to->HeardAt(port);
            int attempt = 0;
            if (!Await([&, &sender = from->Connections()] {
                    stream.Send(sender, port, FaderMove(++attempt)); // each another
                    std::this_thread::sleep_for(50ms);
                    return stream.HasAll();
                }))
                throw std::runtime_error("Nothing passes.");
            stream.CollectInto(delays, ignored, ignored);
        }
    }
}

Figures Collect(End& units, End& mixer) {
    Await([&] {
        bool hasAll = true;
        for (std::size_t port = 0; port < kUnits; ++port)
            hasAll = hasAll && units.HeardAt(port).HasAll() && mixer.HeardAt(port).HasAll();
        return hasAll;
    });
    Figures figures;
    std::vector<Clock::duration> delays;
    for (End* end : {&units, &mixer})
        for (std::size_t port = 0; port < kUnits; ++port)
            end->HeardAt(port).CollectInto(delays, figures.lost, figures.unexpected);
    figures.passed = delays.size();
    if (delays.empty())
        return figures;
    const auto middle = delays.begin() + static_cast<std::ptrdiff_t>(delays.size() / 2);
    std::nth_element(delays.begin(), middle, delays.end());
    figures.median = std::chrono::duration<double, std::micro>(*middle).count();
    return figures;
}

Figures Play(End& units, End& mixer, std::chrono::seconds length) {
    const int steps = static_cast<int>(length / kStep);
    Clock::time_point next = Clock::now();
    for (int step = 0; step < steps; ++step) {
        next = std::max(next + kStep, Clock::now() - kLongestCatchUp);
        std::this_thread::sleep_until(next);
        const std::size_t port = static_cast<std::size_t>(step) % kUnits;
        const int count = step / static_cast<int>(kUnits);
        mixer.HeardAt(port).Send(units.Connections(), port, FaderMove(count));
        units.HeardAt(port).Send(mixer.Connections(), port, FaderMove(count));
        if (step / static_cast<int>(kUnits) % 2 == 0)
            units.HeardAt(port).Send(mixer.Connections(), port, Meter(count / 2));
    }
    return Collect(units, mixer);
}

void Print(const char* what, const Figures& figures) {
    std::printf("%s: %zu passed, %d lost, %d reordered, median delay %.0f us\n", what,
                figures.passed, figures.lost, figures.unexpected, figures.median);
    std::fflush(stdout);
}

bool IsWhole(const Figures& figures) {
    return figures.passed > 0 && figures.lost == 0 && figures.unexpected == 0;
}

bool Compare(std::chrono::seconds length) {
    End units("Load Units", "Unit");
    End mixer("Load Mixer", "Strips");
    for (std::size_t port = 0; port < kUnits; ++port)
        Connect(mixer.Ports()[port], units.Ports()[port]);
    const Figures directly = Play(units, mixer, length);
    Print("directly", directly);

    for (std::size_t port = 0; port < kUnits; ++port)
        Disconnect(mixer.Ports()[port], units.Ports()[port]);
    const std::vector<SequencerPort> surfaces = AwaitPorts("Surfaces 0", kUnits);
    for (std::size_t port = 0; port < kUnits; ++port)
        Connect(mixer.Ports()[port], surfaces[port]);
    AwaitPassage(units, mixer);
    const Figures through = Play(units, mixer, length);
    Print("through surface-ports", through);
    std::printf("median delay added by surface-ports: %.0f us\n", through.median - directly.median);
    return IsWhole(directly) && through.passed == directly.passed && IsWhole(through);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    try {
        return Compare(std::chrono::seconds(std::stoi(arguments[1]))) ? 0 : 1;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "%s\n", problem.what());
        return 1;
    }
}
