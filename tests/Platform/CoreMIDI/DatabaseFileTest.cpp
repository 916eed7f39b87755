#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

class DatabaseFileTest : public MidiTest {
protected:
    std::string Content() const {
        std::ifstream file(fFile, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    /// The file can't be used, for the reason `state`, and remains byte for byte as it was.
    void ExpectRefused(KestrinMIDIDatabaseState state, const std::string& reason) {
        MIDIRestart();
        const std::string before = Content();
        EXPECT_EQ(KestrinMIDIGetDatabaseState(), state);
        EXPECT_THAT(TextOf(KestrinMIDICopyDatabaseProblem()), testing::HasSubstr(reason));
        EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
        EXPECT_EQ(MIDIObjectFindByUniqueID(fKnownID, nullptr, nullptr), kMIDIObjectNotFound);
        EXPECT_EQ(MIDIObjectSetIntegerProperty(fKnown, CFSTR("group"), 2), kMIDIServerStartErr);
        EXPECT_EQ(MIDIDeviceCreate(nullptr, nullptr, nullptr, nullptr, nullptr),
                  kMIDIServerStartErr);
        MIDIRestart();
        EXPECT_EQ(Content(), before);
    }

    const MIDIObjectRef fKnown = AddInterface("Interface", 1);
    const MIDIUniqueID fKnownID = ID(fKnown);
};

TEST_F(DatabaseFileTest, IsMadeWithItsFoldersForTheUserAlone) {
    const std::filesystem::path folder = fFile.parent_path() / "new";
    Use(folder / "folder" / "objects.sqlite3");
    EXPECT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseReady);
    EXPECT_EQ(KestrinMIDICopyDatabaseProblem(), nullptr);
    EXPECT_EQ(KestrinMIDICopyDatabaseDamage(), nullptr);
    EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms(0700));
    EXPECT_EQ(std::filesystem::status(folder / "folder" / "objects.sqlite3").permissions(),
              std::filesystem::perms(0600));
}

TEST_F(DatabaseFileTest, StandsWhereTheEnvironmentSays) {
    Use("");
    setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(TextOf(KestrinMIDICopyDatabasePath()), "/data/kestrin-midi/objects.sqlite3");
    unsetenv("XDG_DATA_HOME");
    setenv("HOME", "/home/user", 1);
    EXPECT_EQ(TextOf(KestrinMIDICopyDatabasePath()),
              "/home/user/.local/share/kestrin-midi/objects.sqlite3");
    const std::string home = getpwuid(geteuid())->pw_dir;
    for (const char* const none : {"", static_cast<const char*>(nullptr)}) {
        none ? setenv("HOME", none, 1) : unsetenv("HOME");
        EXPECT_EQ(TextOf(KestrinMIDICopyDatabasePath()),
                  home + "/.local/share/kestrin-midi/objects.sqlite3");
    }
}

TEST_F(DatabaseFileTest, MayHaveANameThatMeansSomethingElseToSQLite) {
    std::filesystem::current_path(fFile.parent_path());
    Use(":memory:");
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    MIDIRestart();
    EXPECT_EQ(NameOf(device), "Interface");
    EXPECT_TRUE(std::filesystem::exists(fFile.parent_path() / ":memory:"));
}

TEST_F(DatabaseFileTest, OfANewerVersionOrAnotherProgramIsRefused) {
    RunSQL("PRAGMA user_version=-1");
    ExpectRefused(kKestrinMIDIDatabaseDamaged, "damaged");
    RunSQL("PRAGMA user_version=2");
    ExpectRefused(kKestrinMIDIDatabaseNewer, "newer");
    RunSQL("PRAGMA application_id=1");
    ExpectRefused(kKestrinMIDIDatabaseForeign, "other program");
    EXPECT_EQ(KestrinMIDIRepairDatabase(nullptr, nullptr), kMIDINotPermitted);
    const std::filesystem::directory_iterator files(fFile.parent_path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "nothing is laid beside it";
    std::filesystem::remove(fFile);
    RunSQL("CREATE TABLE things(name)");
    ExpectRefused(kKestrinMIDIDatabaseForeign, "other program");
}

TEST_F(DatabaseFileTest, ThatIsDamagedIsRefused) {
    MIDIRestart();
    const std::string whole = Content();
    for (const auto& content :
         {std::string(1, 'x'), std::string(8192, 'x'), whole.substr(0, whole.size() / 2)}) {
        std::ofstream(fFile, std::ios::binary) << content;
        ExpectRefused(kKestrinMIDIDatabaseDamaged, "damaged");
    }
}

TEST_F(DatabaseFileTest, HoldsEverythingItselfAfterACleanExit) {
    // Another program keeps the file open, so that the log beside it stays.
    const ConnectionHolder other = OpenFile();
    ASSERT_EQ(QueryInteger(other.get(), "SELECT count(*) FROM objects", 0), 4);
    SetNumber(fKnown, "group", 9);
    MIDIRestart();
    ASSERT_TRUE(std::filesystem::exists(fFile.string() + "-wal"));
    const std::filesystem::path copy = fFile.parent_path() / "copy";
    std::filesystem::copy_file(fFile, copy);
    Use(copy);
    EXPECT_EQ(Number(fKnown, "group"), 9);
}

TEST_F(DatabaseFileTest, ThatIsRemovedIsMadeAnew) {
    ASSERT_EQ(MIDIGetNumberOfDevices(), 1u);
    for (const char* const suffix : {"", "-wal", "-shm"})
        std::filesystem::remove(fFile.string() + suffix);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
}

} // namespace
