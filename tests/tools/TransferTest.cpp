#include "tests/tools/MidiSetup.h"

#include <cstdlib>
#include <iterator>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(MidiSetup, BringsAnExportedStudioIntoANewDatabaseUnchanged) {
    Do({"demo"});
    Do({"connect", "Rack Interface:Port 1", "SAC-2K"});
    Do({"set", "HUI", "blob", "00ff", "--data"});
    const std::string document = Do({"export"});
    EXPECT_EQ(Do({"import", "-", "--yes"}, document), "There is nothing to change.\n");

    const TestStudio other;
    EXPECT_THAT(Do({"import", "-", "--yes"}, document), HasSubstr("  add external HUI\n"));
    EXPECT_EQ(Do({"export"}), document);
}

TEST_F(MidiSetup, KeepsTheOlderExportAndTheDatabaseWhereAnExportFails) {
    AddBoxAndSurfaces();
    const TemporaryFolder folder;
    const std::string file = folder / "studio.json";
    Do({"export", file});
    const std::string older = ReadAll(file);
    Do({"set", "Box", "long", std::string(100000, 'x')});
    const std::string limited = "trap '' XFSZ; ulimit -f 64; exec '" MIDISETUP_PROGRAM "' export '";
    EXPECT_NE(std::system((limited + file + "' 2>'" + file + ".errors'").c_str()), 0);
    EXPECT_THAT(ReadAll(file + ".errors"), HasSubstr("cannot write " + file));
    EXPECT_EQ(ReadAll(file), older);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2);

    EXPECT_THAT(Refused({"export", fStudio.DatabasePath()}), HasSubstr("database itself"));
    EXPECT_THAT(Refused({"export", "/dev/full"}), HasSubstr("No space left"));
    const std::string full = "'" MIDISETUP_PROGRAM "' list >/dev/full 2>'" + file + "'";
    EXPECT_NE(std::system(full.c_str()), 0);
    EXPECT_THAT(ReadAll(file), HasSubstr("standard output cannot be written"));
}

TEST_F(MidiSetup, ImportsAllOrNothing) {
    const auto device = [](int id, std::size_t length) {
        return json({{"uniqueID", id},
                     {"kind", "external"},
                     {"properties", {{"name", std::string(length, 'x')}}},
                     {"entities", json::array()}});
    };
    const json document = {{"format", "midisetup"},
                           {"version", 1},
                           {"endpoints", json::array()},
                           {"devices", {device(5, 3), device(6, std::size_t{2} << 20U)}}};
    EXPECT_EQ(RunProgram({"import", "-", "--yes"}, document.dump()).exitCode, kFailed);
    EXPECT_EQ(MIDIGetNumberOfExternalDevices(), 0u);
    EXPECT_THAT(RunProgram({"import", "-"}, std::string(60000, '[')).errors, HasSubstr("too deep"));
    EXPECT_THAT(Refused({"import", "/dev/zero"}), HasSubstr("larger than 64 MiB"));
}

TEST_F(MidiSetup, ShowsWhatAnImportWouldChangeAndAsks) {
    AddBoxAndSurfaces();
    const TemporaryFolder folder;
    const std::string file = folder / "studio.json";
    Do({"export", file});
    Do({"rename", "Desk", "Table"});
    Do({"set", "Box", "extra", "1"});

    const ProgramRun no = RunProgram({"import", file}, "n\n");
    EXPECT_EQ(no.exitCode, kFailed);
    EXPECT_THAT(no.output, HasSubstr("  remove extra of Box\n  set name of Table to \"Desk\"\n"));
    EXPECT_THAT(no.errors, HasSubstr("nothing was changed"));
    EXPECT_THAT(Do({"list"}), HasSubstr("Table"));
    Do({"import", file}, "y\n");
    EXPECT_THAT(Do({"list"}), HasSubstr("Desk"));
}

TEST_F(MidiSetup, RefusesDocumentsOfAnotherForm) {
    const std::string head = R"({"format":"midisetup","version":1,"endpoints":[],"devices":)";
    const std::string device = R"({"uniqueID":5,"kind":"external","entities":[],"properties":)";
    const std::string documents[] = {
        "",
        "[",
        "{}",
        R"({"format":"midisetup","version":2})",
        head + "7}",
        head + "[7]}",
        head + "[" + device + "3}]}",
        head + "[" + device + R"({"a":1.5}}]})",
        head + "[" + device + R"({"a":4294967296}}]})",
        head + "[" + device + R"({"a":{"data":"0"}}}]})",
        head + "[" + device + "{}}," + device + "{}}]}",
    };
    for (const std::string& document : documents) {
        const ProgramRun run = RunProgram({"import", "-", "--yes"}, document);
        EXPECT_EQ(run.exitCode, kFailed) << document;
        EXPECT_THAT(run.errors, StartsWith("midisetup: ")) << document;
    }
    EXPECT_THAT(Do({"list"}), HasSubstr("There are no MIDI devices"));
}

} // namespace
