#include "tests/support/TestStudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// What a program did: its exit code and what it wrote.
struct ProgramRun {
    int exitCode;
    std::string output;
    std::string errors;
};

std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Runs a program to its end; `input` is its standard input. No argument contains a '.
ProgramRun RunProgram(const std::vector<std::string>& arguments, const std::string& input = "",
                      const std::string& program = MIDISETUP_PROGRAM) {
    const TemporaryFolder folder;
    std::ofstream(folder / "in", std::ios::binary) << input;
    std::string command = "'" + program + "'";
    for (const std::string& argument : arguments)
        command += " '" + argument + "'";
    const std::string files = folder.Path().string();
    command += " <" + files + "/in >" + files + "/out 2>" + files + "/errors";
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), ReadAll(folder / "out"), ReadAll(folder / "errors")};
}

constexpr int kFailed = 1;
constexpr int kUsage = 2;
constexpr int kDatabase = 3;

/// Each case has a database of its own, which the program and the test share.
class MidiSetup : public testing::Test {
protected:
    /// Runs a command that must succeed and answers its output.
    std::string Do(const std::vector<std::string>& arguments, const std::string& input = "") {
        const ProgramRun run = RunProgram(arguments, input);
        EXPECT_EQ(run.exitCode, 0) << arguments[0] << ": " << run.errors;
        EXPECT_EQ(run.errors, "");
        return run.output;
    }

    /// Runs a command that must fail, with nothing on standard output, and answers its errors.
    std::string Refused(const std::vector<std::string>& arguments, int exitCode = kFailed) {
        const ProgramRun run = RunProgram(arguments);
        EXPECT_EQ(run.exitCode, exitCode) << arguments[0];
        EXPECT_EQ(run.output, "");
        return run.errors;
    }

    void AddBoxAndSurfaces() {
        Do({"add", "interface", "Box", "--ports", "2", "--manufacturer", "Velt"});
        Do({"add", "external", "Desk", "--manufacturer", "Mackie", "--model", "Mackie Control"});
        Do({"add", "external", "Old", "--manufacturer", "Mackie", "--model", "HUI"});
    }

    json Surfaces() { return json::parse(Do({"surfaces", "--json"})); }

    TestStudio fStudio;
};

TEST_F(MidiSetup, ShowsTheDemonstrationStudioAsTreeAndSurfaces) {
    Do({"demo"});
    const std::string tree = Do({"list"});
    EXPECT_THAT(tree, HasSubstr("MCU Pro USB (added), surface: new, no group yet"));
    EXPECT_THAT(tree, HasSubstr("Mackie Control, surface: group 1, position 1"));
    EXPECT_THAT(tree, HasSubstr("    Port 1 (in, out)\n      <-> Mackie Control\n"));

    const std::string surfaces = Do({"surfaces"});
    EXPECT_THAT(surfaces, StartsWith("Mackie Control on Desk Interface output Port 1\n"));
    EXPECT_THAT(surfaces, HasSubstr("\nMCU Pro USB Port 1\n  Mackie Control (type 20), group 0, "
                                    "position 127"));
    EXPECT_THAT(surfaces, HasSubstr("new: this scan stored its default settings"));
    EXPECT_THAT(Do({"surfaces"}), Not(HasSubstr("new:")));

    const json listed = Surfaces();
    ASSERT_EQ(listed.size(), 6u);
    EXPECT_EQ(listed[1]["name"], "Left Extender on Desk Interface output Port 2");
    EXPECT_EQ(listed[1]["type"], 21);
    EXPECT_EQ(listed[1]["position"], 0);
    EXPECT_THAT(Refused({"demo"}), HasSubstr("KESTRIN_MIDI_DATABASE"));

    EXPECT_THAT(RunProgram({}, "", MIXER_PROGRAM).output,
                HasSubstr("group 1, position 0: Left Extender\n"
                          "group 1, position 1: Mackie Control\n"
                          "group 1, position 2: Right Extender\n"
                          "group 2, position 0: HUI\n"));
}

TEST_F(MidiSetup, CablesAndUncablesInBothDirections) {
    AddBoxAndSurfaces();
    Do({"connect", "Box:Port 1", "Desk"});
    ASSERT_EQ(Surfaces().size(), 1u);
    EXPECT_EQ(Surfaces()[0]["name"], "Desk on Box output Port 1");
    EXPECT_EQ(Do({"connect", "Box:Port 1", "Desk"}), "They are connected already.\n");

    Do({"connect", "Box:Port 1", "Old:Port 1"});
    EXPECT_THAT(Do({"show", "Box:Port 1:source"}),
                HasSubstr("connUniqueID: Desk, Old:Port 1:source\n"));
    EXPECT_THAT(Do({"show", "Box:Port 1:destination"}),
                HasSubstr("connUniqueID: Desk, Old:Port 1:destination\n"));
    Do({"disconnect", "Box:Port 1", "Desk"});
    EXPECT_EQ(Surfaces()[0]["name"], "Old on Box output Port 1");
    Do({"disconnect", "Box:Port 1"});
    EXPECT_EQ(Surfaces().size(), 0u);

    EXPECT_THAT(Refused({"disconnect", "Box:Port 1"}), HasSubstr("nothing is connected"));
    EXPECT_THAT(Refused({"connect", "Box", "Desk"}), HasSubstr("name one of its ports"));
    EXPECT_THAT(Refused({"connect", "Desk:Port 1", "Box"}), HasSubstr("external device"));
    EXPECT_THAT(Refused({"connect", "Box:Port 1", "Box:Port 2"}), HasSubstr("only those are"));
}

TEST_F(MidiSetup, RemovesADeviceWithItsCables) {
    AddBoxAndSurfaces();
    Do({"connect", "Box:Port 1", "Desk"});
    Do({"connect", "Box:Port 1", "Old"});
    Do({"remove", "Desk"});
    EXPECT_EQ(Surfaces()[0]["name"], "Old on Box output Port 1");
    Do({"remove", "Old"});
    EXPECT_THAT(Do({"show", "Box:Port 1:source"}), Not(HasSubstr("connUniqueID")));
    Do({"remove", "Box:Port 2"});
    EXPECT_THAT(Do({"list"}), Not(HasSubstr("Port 2")));
    EXPECT_THAT(Refused({"remove", "Box:Port 1:source"}), HasSubstr("only devices and ports"));
}

TEST_F(MidiSetup, SetsPropertiesByTheirLooks) {
    AddBoxAndSurfaces();
    Do({"set", "Box", "a", "-12"});
    Do({"set", "Box", "b", "12a"});
    Do({"set", "Box", "c", "12", "--string"});
    Do({"set", "Box", "key", "0aFF", "--data"});
    const json properties = json::parse(Do({"export"}))["devices"][0]["properties"];
    EXPECT_EQ(properties["a"], -12);
    EXPECT_EQ(properties["b"], "12a");
    EXPECT_EQ(properties["c"], "12");
    EXPECT_EQ(properties["key"], json({{"data", "0aff"}}));
    EXPECT_EQ(Do({"get", "Box:Port 1:source", "key"}), "0aff\n") << "inherited";
    Do({"unset", "Box", "key"});
    EXPECT_THAT(Refused({"get", "Box", "key"}), HasSubstr("has no property"));
    EXPECT_THAT(Refused({"set", "Box", "key", "2147483648"}), HasSubstr("32 bits"));
    EXPECT_THAT(Refused({"set", "Box", "key", "0a0", "--data"}), HasSubstr("hexadecimal"));

    Do({"rename", "Box", "128"});
    EXPECT_EQ(Do({"get", "128", "name"}), "128\n");
}

TEST_F(MidiSetup, NamesTheCandidatesOfAnAmbiguousOrMisspeltName) {
    AddBoxAndSurfaces();
    EXPECT_THAT(Refused({"show", "desc"}), HasSubstr("did you mean\n  Desk  (external, unique ID"));
    EXPECT_THAT(Refused({"show", "Box:Prot 1"}), HasSubstr("\n  Box:Port 1  (port"));

    Do({"rename", "Old", "Desk"});
    const std::string errors = Refused({"show", "Desk"});
    EXPECT_THAT(errors, HasSubstr("names more than one"));
    const std::string id =
        errors.substr(errors.rfind("ID ") + 3, errors.rfind(')') - errors.rfind("ID ") - 3);
    EXPECT_THAT(Do({"show", id}), HasSubstr("unique ID: " + id));
}

TEST_F(MidiSetup, MakesNamesOfAnyBytesPrintable) {
    Do({"add", "external", "a\033[31m\n\u202Eb"});
    EXPECT_THAT(Do({"list"}), HasSubstr("a\\x1b[31m\\x0a\\u{202e}b"));
    EXPECT_THAT(Do({"list"}), Not(HasSubstr("\033")));
    EXPECT_THAT(Refused({"add", "external", "\xff"}), HasSubstr("\"\\xff\" is not valid UTF-8"));
}

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

TEST_F(MidiSetup, TellsTheDoctorsFindings) {
    Do({"demo"});
    const ProgramRun healthy = RunProgram({"doctor"});
    EXPECT_THAT(healthy.output, Not(HasSubstr("connected")));
    EXPECT_NE(healthy.exitCode, kFailed);

    const std::string surface = Do({"get", "SAC-2K", "uniqueID"});
    Do({"set", "Desk Interface:Port 4:source", "connUniqueID", "77"});
    Do({"unset", "Rack Interface:Port 1:source", "connUniqueID"});
    Do({"disconnect", "Rack Interface:Port 2"});
    Do({"set", "Left Extender", "com_velt_sorvex_control_surface_grouppos", "1"});
    const ProgramRun sick = RunProgram({"doctor"});
    EXPECT_EQ(sick.exitCode, kFailed);
    EXPECT_THAT(sick.output, HasSubstr("Desk Interface:Port 4:source is connected to an object "
                                       "that is gone (unique ID 77)"));
    EXPECT_THAT(sick.output, HasSubstr("HUI is connected to an output only"));
    EXPECT_THAT(sick.output, HasSubstr("SAC-2K is connected to no port"));
    EXPECT_THAT(sick.output, HasSubstr("Left Extender, Mackie Control have the same group 1 and "
                                       "position 1"));
}

TEST_F(MidiSetup, TellsWhyADatabaseCannotBeUsedAndRepairsADamagedOne) {
    std::ofstream(fStudio.DatabasePath()) << "this is no database, and long enough to be seen so";
    EXPECT_THAT(Refused({"list"}), HasSubstr("midisetup doctor"));
    const ProgramRun doctor = RunProgram({"doctor"});
    EXPECT_EQ(doctor.exitCode, kDatabase);
    EXPECT_THAT(doctor.output, HasSubstr("--repair"));
    EXPECT_THAT(RunProgram({"doctor", "--repair"}).output, HasSubstr("was set aside as"));
    EXPECT_THAT(Do({"list"}), HasSubstr("There are no MIDI devices"));
}

TEST_F(MidiSetup, ExplainsItselfAndRefusesWhatItDoesNotUnderstand) {
    EXPECT_THAT(Do({"surfaces", "--help"}), HasSubstr("stores the default settings"));
    EXPECT_THAT(Refused({"dance"}, kUsage), Not(testing::IsEmpty()));
    EXPECT_THAT(Refused({"add", "interface", "Box", "--ports", "-1"}, kUsage), HasSubstr("ports"));
}

} // namespace
