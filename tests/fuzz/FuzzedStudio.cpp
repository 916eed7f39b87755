#include "tests/fuzz/FuzzedStudio.h"

#include "Platform/CoreMIDI/Interface/Service.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/midisetup/CommandLine.h"

#include <sqlite3.h>
#include <unicode/utf8.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <mutex>
#include <sstream>
#include <utility>

/// Whole stacks of each allocation take a quarter of the time.
extern "C" const char* __asan_default_options() {
    return "malloc_context_size=3";
}

namespace FuzzedStudio {

namespace {

using namespace KestrinMIDI;

constexpr int kMostSteps = 200'000;

SequencerSnapshot sPlugged;
bool sIsNews = false;

class ShownSequencer final : public SequencerReader {
public:
    SequencerSnapshot Read() override { return sPlugged; }
    bool HasChanged() override { return std::exchange(sIsNews, false); }
    int Descriptor() const override { return -1; }
};

/// The folder in memory, for the whole life of the process.
const std::filesystem::path& Folder() {
    static const TemporaryFolder folder;
    return folder.Path();
}

void Prepare() {
    if (std::filesystem::exists("/dev/shm"))
        setenv("TMPDIR", "/dev/shm", 0);
    setenv("KESTRIN_MIDI_DATABASE", (Folder() / "db").c_str(), 1);
    setenv("HOME", Folder().c_str(), 1);
    setenv("XDG_CONFIG_HOME", Folder().c_str(), 1);
    setenv("JACK_DEFAULT_SERVER", "none of this user's", 1);
    std::filesystem::current_path(Folder());
    Service::Instance().UseReader(std::make_unique<ShownSequencer>());
}

} // namespace

bool IsPlainText(const std::string& text) {
    const auto size = static_cast<std::int32_t>(text.size());
    for (std::int32_t place = 0; place < size;) {
        UChar32 character = 0;
        U8_NEXT(text.data(), place, size, character);
        const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
        if (isControl && character != '\n' && character != '\t')
            return false;
    }
    return true;
}

void Begin(const std::string& database) {
    static std::once_flag isPrepared;
    std::call_once(isPrepared, Prepare);
    MIDIRestart();
    for (const auto& entry : std::filesystem::directory_iterator(Folder()))
        std::filesystem::remove_all(entry);
    if (!database.empty())
        std::ofstream("db", std::ios::binary) << database;
}

std::string Database() {
    std::ifstream file(Folder() / "db", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void RunSQL(const std::string& statements) {
    MIDIRestart();
    sqlite3* file = nullptr;
    sqlite3_open("db", &file);
    sqlite3_limit(file, SQLITE_LIMIT_ATTACHED, 0); // no other file is made
    sqlite3_limit(file, SQLITE_LIMIT_LENGTH, 1 << 20);
    sqlite3_progress_handler(
        file, kMostSteps, [](void*) { return 1; }, nullptr);
    sqlite3_exec(file, statements.c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(file);
}

const std::string& SmallStudio() {
    static const std::string studio = [] {
        Begin("");
        PlugIn(OneUnit());
        for (const char* const device : {"interface", "external"})
            Require(MidiSetup({"add", device, device, "--model", "HUI"}).exitCode == 0, "is added");
        Require(MidiSetup({"connect", "interface:Port 1", "external"}).exitCode == 0, "is cabled");
        // What is random becomes the same for all.
        RunSQL("UPDATE properties SET value=(SELECT 1000+id FROM objects WHERE unique_id=value) "
               "WHERE key='connUniqueID'; UPDATE objects SET unique_id=1000+id");
        return Database();
    }();
    return studio;
}

void PlugIn(SequencerSnapshot snapshot) {
    sPlugged = std::move(snapshot);
    sIsNews = true;
}

SequencerSnapshot OneUnit() {
    SequencerSnapshot snapshot;
    snapshot.state = SequencerState::Ready;
    snapshot.ownClient = 128;
    snapshot.clients = {{16, "X-Touch", true, 0, {{0, "X-Touch MIDI 1", true, true, true}}},
                        {129, "Mixer", false, -1, {{0, "control", true, true}}}};
    snapshot.cards = {{0, "X-Touch", "snd-usb-audio", "1-1:1.0",
                       UsbUnit{"1397", "00b4", "Behringer", "X-Touch", "", "0000:00:14.0-1"},
                       "XTouch"}};
    return snapshot;
}

Answer MidiSetup(const std::vector<std::string>& words, const std::string& input) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream errors;
    std::cin.clear();
    auto* const oldIn = std::cin.rdbuf(in.rdbuf());
    auto* const oldOut = std::cout.rdbuf(out.rdbuf());
    auto* const oldErrors = std::cerr.rdbuf(errors.rdbuf());
    Answer answer{MidiSetup::RunCommandLine(words), out.str(), errors.str()};
    std::cin.rdbuf(oldIn);
    std::cout.rdbuf(oldOut);
    std::cerr.rdbuf(oldErrors);
    const bool isDoctor = !words.empty() && words.front() == "doctor";
    Require(answer.exitCode >= 0 && answer.exitCode <= (isDoctor ? 4 : 2),
            "an exit code of its own");
    Require(answer.exitCode == 0 || isDoctor || answer.errors.size() > 10, "a failure has words");
    Require(IsPlainText(answer.output) && IsPlainText(answer.errors), "text for a terminal");
    return answer;
}

} // namespace FuzzedStudio
