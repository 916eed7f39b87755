#include "tests/CoreMIDI/MidiTest.h"

#include <sys/stat.h>
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
        EXPECT_NE(TextOf(KestrinMIDICopyDatabaseProblem()).find(reason), std::string::npos)
            << TextOf(KestrinMIDICopyDatabaseProblem());
        EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
        EXPECT_EQ(MIDIObjectFindByUniqueID(fKnownID, nullptr, nullptr), kMIDIObjectNotFound);
        EXPECT_EQ(MIDIObjectSetIntegerProperty(fKnown, CFSTR("group"), 2), kMIDIServerStartErr);
        EXPECT_EQ(MIDIDeviceCreate(nullptr, nullptr, nullptr, nullptr, nullptr),
                  kMIDIServerStartErr);
        MIDIRestart();
        EXPECT_EQ(Content(), before);
    }

    void AddKnown() {
        fKnown = AddInterface("Interface");
        fKnownID = UniqueIDOf(fKnown);
        MIDIRestart();
    }

    MIDIObjectRef fKnown = 1;
    MIDIUniqueID fKnownID = 1;
};

TEST_F(DatabaseFileTest, IsMadeWithItsFoldersForTheUserAlone) {
    Use(fFolder / "new" / "folder" / "objects.sqlite3");
    EXPECT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseReady);
    EXPECT_EQ(KestrinMIDICopyDatabaseProblem(), nullptr);
    EXPECT_EQ(KestrinMIDICopyDatabaseDamage(), nullptr);
    struct stat folder {};
    ASSERT_EQ(stat((fFolder / "new").c_str(), &folder), 0);
    EXPECT_EQ(folder.st_mode & 0777, 0700u);
}

TEST_F(DatabaseFileTest, StandsWhereTheEnvironmentSays) {
    Use("");
    setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(TextOf(KestrinMIDICopyDatabasePath()), "/data/kestrin-midi/objects.sqlite3");
    unsetenv("XDG_DATA_HOME");
    setenv("HOME", "/home/user", 1);
    EXPECT_EQ(TextOf(KestrinMIDICopyDatabasePath()),
              "/home/user/.local/share/kestrin-midi/objects.sqlite3");
    Use(fFile);
}

TEST_F(DatabaseFileTest, IsRefusedWhereTheFolderCantBeMade) {
    std::ofstream(fFolder / "file") << "no folder";
    Use(fFolder / "file" / "objects.sqlite3");
    ExpectRefused(kKestrinMIDIDatabaseNoFolder, "can't be made");
}

TEST_F(DatabaseFileTest, OfANewerVersionIsRefused) {
    AddKnown();
    RunSQL("PRAGMA user_version=2");
    ExpectRefused(kKestrinMIDIDatabaseNewer, "newer");
}

TEST_F(DatabaseFileTest, OfAnotherProgramIsRefused) {
    AddKnown();
    RunSQL("PRAGMA application_id=1");
    ExpectRefused(kKestrinMIDIDatabaseForeign, "other program");
    std::filesystem::remove(fFile);
    RunSQL("CREATE TABLE things(name)");
    ExpectRefused(kKestrinMIDIDatabaseForeign, "other program");
}

TEST_F(DatabaseFileTest, ThatIsDamagedIsRefused) {
    AddKnown();
    const std::string whole = Content();
    std::ofstream(fFile, std::ios::binary) << std::string(8192, 'x');
    ExpectRefused(kKestrinMIDIDatabaseDamaged, "damaged");
    std::ofstream(fFile, std::ios::binary) << whole.substr(0, whole.size() / 2);
    ExpectRefused(kKestrinMIDIDatabaseDamaged, "damaged");
    // The page of the objects' own table, behind a header and a schema that are whole.
    std::string holed = whole;
    holed.replace(4096, 4096, 4096, '\xAA');
    std::ofstream(fFile, std::ios::binary) << holed;
    ExpectRefused(kKestrinMIDIDatabaseDamaged, "damaged");
}

TEST_F(DatabaseFileTest, ThatCanOnlyBeReadIsRefused) {
    AddKnown();
    std::filesystem::permissions(fFolder.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(fFile.parent_path(), std::filesystem::perms(0555));
    std::filesystem::permissions(fFile, std::filesystem::perms(0444));
    // The superuser may write all the same, so the child becomes an ordinary user.
    EXPECT_EQ(InChild([this] {
                  if (geteuid() == 0 && setuid(65534) != 0)
                      return 2;
                  ExpectRefused(kKestrinMIDIDatabaseReadOnly, "");
                  return HasFailure() ? 1 : 0;
              }),
              0);
    std::filesystem::permissions(fFile.parent_path(), std::filesystem::perms(0700));
}

TEST_F(DatabaseFileTest, HoldsEverythingItselfAfterACleanExit) {
    AddKnown();
    // Another program keeps the file open, so that the log beside it stays.
    sqlite3* other = nullptr;
    sqlite3_open(fFile.c_str(), &other);
    const ConnectionHolder holder(other);
    ASSERT_EQ(QueryInteger(other, "SELECT count(*) FROM objects", 0), 4);
    ASSERT_EQ(MIDIObjectSetIntegerProperty(fKnown, CFSTR("group"), 9), noErr);
    MIDIRestart();
    ASSERT_TRUE(std::filesystem::exists(fFile.string() + "-wal"));
    std::filesystem::copy_file(fFile, fFolder / "copy");
    Use(fFolder / "copy");
    EXPECT_EQ(IntegerOf(fKnown, CFSTR("group")), 9);
}

TEST_F(DatabaseFileTest, ThatIsReplacedIsOpenedAnew) {
    AddInterface("Old");
    ASSERT_EQ(MIDIGetNumberOfDevices(), 1u);
    for (const char* const suffix : {"", "-wal", "-shm"})
        std::filesystem::remove(fFile.string() + suffix);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 0u);
    AddInterface("New");
    MIDIRestart();
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
}

} // namespace
