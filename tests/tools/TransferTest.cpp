#include "tests/tools/MidiSetup.h"

#include <cstdlib>

namespace {

using testing::HasSubstr;

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

TEST_F(MidiSetup, SaysWhereNothingCanBeExported) {
    EXPECT_THAT(Refused({"export", fStudio.DatabasePath()}), HasSubstr("database itself"));
    EXPECT_THAT(Refused({"export", "/dev/full"}), HasSubstr("No space left"));
    const TemporaryFolder folder;
    const std::string file = folder / "errors";
    const std::string full = "'" MIDISETUP_PROGRAM "' list >/dev/full 2>'" + file + "'";
    EXPECT_NE(std::system(full.c_str()), 0);
    EXPECT_THAT(ReadAll(file), HasSubstr("standard output cannot be written"));
}

TEST_F(MidiSetup, RefusesDocumentsWithoutEnd) {
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

} // namespace
