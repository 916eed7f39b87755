#include "tests/fuzz/FuzzedStudio.h"

#include <algorithm>
#include <cstdint>
#include <sstream>

// Each line is a command for midisetup, its words stand between tabs. Whatever was asked for, the
// database is whole and the studio can be exported.

using namespace FuzzedStudio;

namespace {

constexpr int kMostCommands = 8;

/// No word is a path that leads out of the working folder.
std::vector<std::string> WordsOf(const std::string& line) {
    std::vector<std::string> words;
    std::istringstream stream(line);
    for (std::string word; std::getline(stream, word, '\t');) {
        std::replace(word.begin(), word.end(), '/', '|');
        words.push_back(word.substr(0, word.find('\0')));
    }
    return words;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    PlugIn(OneUnit());
    Begin(SmallStudio());
    std::istringstream lines(std::string(bytes, bytes + count));
    std::string line;
    for (int i = 0; i < kMostCommands && std::getline(lines, line); ++i)
        MidiSetup(WordsOf(line), "y\n");
    Require(MidiSetup({"doctor"}).exitCode < 2, "the database is whole");
    Require(MidiSetup({"export"}).exitCode == 0, "the studio can be exported");
    return 0;
}
