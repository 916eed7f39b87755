#include "tests/fuzz/FuzzedStudio.h"

#include <CoreMIDI/CoreMIDI.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// The bytes are a database file, or statements of SQL that change a whole one. A file that is
// refused stays as it is, with words that tell why; one that is used takes a property and loses
// none; one that is repaired is whole.

using namespace FuzzedStudio;

namespace {

constexpr int kDamaged = 3;
constexpr std::size_t kHeader = 100;
constexpr std::string_view kUniqueID = "\"uniqueID\": ";

void CheckUse(const std::string& exported) {
    const std::size_t place = exported.find(kUniqueID);
    if (place == std::string::npos)
        return;
    const std::string id = std::to_string(std::atoi(exported.c_str() + place + kUniqueID.size()));
    if (MidiSetup({"set", id, "fuzzed", "7"}).exitCode != 0)
        return;
    MIDIRestart();
    Require(MidiSetup({"get", id, "fuzzed"}).output == "7\n", "what was set is there");
    MidiSetup({"unset", id, "fuzzed"});
    Require(MidiSetup({"export"}).output == exported, "nothing else has changed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const std::string given(bytes, bytes + count);
    const bool isFile = given.starts_with("SQLite format 3");
    PlugIn(OneUnit());
    Begin(isFile ? given : SmallStudio());
    if (!isFile)
        RunSQL(given);
    const std::string before = Database();
    const Answer exported = MidiSetup({"export"});
    MIDIRestart(); // what is plugged was written, and is read again
    const int health = MidiSetup({"doctor"}).exitCode;
    // That a log is kept is noted in the header before the tables turn out to be damaged.
    const bool isDamaged = exported.errors.find(" is damaged (") != std::string::npos;
    const auto kept = [&](const std::string& file) {
        return file.substr(isDamaged ? std::min(kHeader, file.size()) : 0);
    };
    const auto isAsBefore = [&] { return kept(Database()) == kept(before); };
    Require(exported.exitCode == 0 || isAsBefore(), "a refused file stays as it is");
    if (health < kDamaged)
        CheckUse(exported.output);
    const bool isRepaired =
        MidiSetup({"doctor", "--repair"}).output.find("set aside") != std::string::npos;
    Require(!isRepaired || health == kDamaged, "only a damaged file is repaired");
    Require(!isRepaired || MidiSetup({"doctor"}).exitCode < kDamaged, "a repaired file is whole");
    Require(isRepaired || exported.exitCode == 0 || isAsBefore(), "repair leaves it, too");
    return 0;
}
