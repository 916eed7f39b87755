#include "tests/tools/MidiSetup.h"

#include "Surfaces/SurfaceGroups.h"

#include <CoreMIDI/MIDIDatabase.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

json Surfaces() {
    return json::parse(RunProgram({"surfaces", "--json"}).output);
}

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
    EXPECT_THAT(Refused({"connect", "Desk", "Box"}),
                HasSubstr("midisetup connect \"Box:Port 1\" \"Desk\""));
    EXPECT_THAT(Refused({"connect", "Desk:Port 1", "Old"}), HasSubstr("external device"));
    EXPECT_THAT(Refused({"connect", "Box:Port 1", "Box:Port 2"}), HasSubstr("only those are"));
}

TEST_F(MidiSetup, GivesSurfacesTheirPlaceAndRefusesWhatIsNone) {
    AddBoxAndSurfaces();
    Do({"place", "Desk", "1", "127"});
    EXPECT_THAT(Do({"place", "Old", "1", "127"}), HasSubstr("Desk has that place, too"));
    EXPECT_THAT(Do({"list"}), HasSubstr("Old, surface: group 1, position 127"));
    EXPECT_THAT(Refused({"place", "Old", "1", "128"}, kUsage), HasSubstr("POSITION"));
    EXPECT_THAT(Refused({"place", "Box", "1", "1"}), HasSubstr("no control surface"));
    EXPECT_THAT(Refused({"set", "Desk", "group", "5"}), HasSubstr("midisetup place"));
    for (const char* value : {"abc", "300", "-5"})
        EXPECT_THAT(Refused({"set", "Desk", kGroupPositionKey, value}), HasSubstr("0 to 127"));

    const std::string id = Do({"get", "Old", "uniqueID"});
    Do({"set", "Old", kGroupPositionKey, id.substr(0, id.size() - 1)});
    const std::string document = Do({"export"});
    EXPECT_EQ(Do({"import", "-", "--yes"}, document), "There is nothing to change.\n");
    EXPECT_THAT(RunProgram({"doctor"}).output,
                HasSubstr("Note: Old has no position that was chosen"));

    MIDIObjectRef desk = 0;
    MIDIObjectFindByUniqueID(std::stoi(Do({"get", "Desk", "uniqueID"})), &desk, nullptr);
    fStudio.SetText(desk, kGroupIDKey, "abc");
    EXPECT_THAT(RunProgram({"import", "-", "--yes"}, Do({"export"})).errors, HasSubstr("0 to 127"));
    const json found = json::parse(RunProgram({"doctor", "--json"}).output);
    EXPECT_THAT(found["problems"].dump(), HasSubstr("abc"));
    EXPECT_THAT(found["problems"].dump(), HasSubstr("midisetup place \\\"Desk\\\" GROUP"));
}

TEST_F(MidiSetup, SaysWhatIsWrongWhereTheDatabaseIsLocked) {
    AddBoxAndSurfaces();
    Do({"connect", "Box:Port 1", "Desk"});
    Do({"connect", "Box:Port 2", "Old"});
    ASSERT_EQ(KestrinMIDIBeginChanges(), noErr);
    const auto start = std::chrono::steady_clock::now();
    const ProgramRun run = RunProgram({"surfaces"});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(9));
    KestrinMIDIAbandonChanges();
    EXPECT_EQ(run.exitCode, kFailed);
    EXPECT_THAT(run.output, HasSubstr("new: its default settings are"));
    EXPECT_THAT(run.errors, HasSubstr("lock"));
    EXPECT_THAT(run.errors, Not(testing::ContainsRegex("-[0-9]{4}")));
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
    Do({"rename", "a\033[31m\n\u202Eb", "x\u200B\u202E\U000E0041y"});
    EXPECT_THAT(Do({"list", "--json"}), HasSubstr("\"x\\u200b\\u202e\\udb40\\udc41y\""));
    EXPECT_THAT(Do({"list"}), HasSubstr("x\\u{200b}\\u{202e}\\u{e0041}y"));

    Do({"add", "external", "שלום"});
    EXPECT_THAT(Do({"list"}), HasSubstr("\u2068שלום\u2069"));
    EXPECT_EQ(Do({"get", "\u2068שלום\u2069", "name"}), "שלום\n") << "as copied from the list";
}

TEST_F(MidiSetup, TellsAtOnceWhatANewDeviceWillBeTakenFor) {
    const auto add = [&](const std::string& name, const std::string& maker,
                         const std::string& model) {
        return Do({"add", "external", name, "--manufacturer", maker, "--model", model});
    };
    EXPECT_THAT(add("A", "Mackie", "Mackie Control Extender"),
                HasSubstr("midisetup set \"A\" model \"Mackie Control Exp\""));
    EXPECT_THAT(add("B", "mackie", "hui"), HasSubstr("taken for no surface"));
    EXPECT_THAT(add("C", "LOUD Technologies, Inc.", "MCU Pro USB"), HasSubstr("plugged in itself"));
    EXPECT_THAT(add("D", "Mackie", "Mackie Control"), Not(HasSubstr("Hint")));
    EXPECT_THAT(RunProgram({"doctor"}).output, HasSubstr("taken for a main unit"));

    EXPECT_THAT(Refused({"add", "external", "A"}), HasSubstr("--force"));
    Do({"add", "external", "A", "--force"});
    EXPECT_THAT(Refused({"add", "external", ""}), HasSubstr("the name is empty"));
    EXPECT_THAT(Refused({"rename", "D", ""}), HasSubstr("the name is empty"));
    EXPECT_THAT(Refused({"set", "D", "", "1"}), HasSubstr("the key is empty"));
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

TEST_F(MidiSetup, TellsWhatUnitsWithoutASerialNumberLeftBehind) {
    Do({"list"}); // makes the database
    fStudio.RunSQL("INSERT INTO objects (id, type, position, unique_id) VALUES (1, 0, 0, 51),"
                   " (2, 0, 1, 52);"
                   "INSERT INTO properties VALUES (1, 'driver', 'x'), (2, 'driver', 'x');"
                   "INSERT INTO hardware VALUES (1, 'usb', '', 'p', '', ''),"
                   " (2, 'usb', '123', 'q', '', '')");
    const std::string found = RunProgram({"doctor"}).output;
    EXPECT_THAT(found, HasSubstr("without a serial number: 1 "));
    EXPECT_THAT(found, HasSubstr("    midisetup remove 51\n"));
}

TEST_F(MidiSetup, TellsWhyADatabaseCannotBeUsedAndRepairsADamagedOne) {
    std::ofstream(fStudio.DatabasePath()) << "this is no database, and long enough to be seen so";
    EXPECT_THAT(Refused({"list"}), HasSubstr("midisetup doctor"));
    const ProgramRun mixer = RunProgram({}, "", MIXER_PROGRAM);
    EXPECT_EQ(mixer.exitCode, kFailed);
    EXPECT_THAT(mixer.errors, HasSubstr(fStudio.DatabasePath().string()));
    const ProgramRun doctor = RunProgram({"doctor"});
    EXPECT_EQ(doctor.exitCode, kDatabase);
    EXPECT_THAT(doctor.output, HasSubstr("--repair"));
    EXPECT_THAT(RunProgram({"doctor", "--repair"}).output, HasSubstr("was set aside as"));
    EXPECT_THAT(Do({"list"}), HasSubstr("There are no MIDI devices"));
}

TEST_F(MidiSetup, LetsSystemdKeepTheSurfacePortsOrSaysHowToStartThem) {
    const TemporaryFolder folder;
    const std::string path = std::getenv("PATH");
    setenv("PATH", folder.Path().c_str(), 1);
    std::ofstream(folder / "systemctl")
        << "#!/bin/sh\necho $@ >>" << folder.Path().string() << "/log\n";
    const std::string refusal = Refused({"ports", "--enable"});
    std::filesystem::permissions(folder / "systemctl", std::filesystem::perms::owner_all);
    Do({"ports", "--enable"});
    Do({"ports", "--disable"});
    setenv("PATH", path.c_str(), 1);
    EXPECT_THAT(refusal, HasSubstr("surface-ports\nwhen you log in"));
    std::istringstream log(ReadAll(folder / "log"));
    std::string word, unit;
    for (std::string last; log >> word && word != "--disable" && word != "disable"; last = word)
        unit = last == "--now" ? word : unit;
    EXPECT_EQ(word, "disable");
    EXPECT_THAT(ReadAll(unit), HasSubstr("/surface-ports\""));
}

TEST_F(MidiSetup, ExplainsItselfAndRefusesWhatItDoesNotUnderstand) {
    EXPECT_THAT(Do({"surfaces", "--help"}), HasSubstr("stores the default settings"));
    EXPECT_EQ(Do({"help", "surfaces"}), Do({"surfaces", "--help"}));
    const std::pair<std::vector<std::string>, const char*> mistakes[] = {
        {{"dance"}, "has no command \"dance\""},
        {{"surface"}, "did you mean \"surfaces\""},
        {{"add", "extrenal", "x"}, "did you mean \"external\""},
        {{"--json", "list"},
         "midisetup takes no option \"--json\"; it stands behind: midisetup list"},
        {{"list", "--repair"}, "it stands behind: midisetup doctor"},
        {{"connect", "a"}, "Usage: midisetup connect PORT DEVICE"},
        {{"list", "a", "b"}, "not expected: a b\n"},
        {std::vector<std::string>(), "needs a command: list, "}};
    for (const auto& [words, message] : mistakes)
        EXPECT_THAT(Refused(words, kUsage), HasSubstr(message));
    EXPECT_THAT(Refused({"add", "interface", "Box", "--ports", "-1"}, kUsage), HasSubstr("ports"));
}

} // namespace
