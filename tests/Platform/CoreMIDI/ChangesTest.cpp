#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <CoreMIDI/MIDIChanges.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>

namespace {

/// A disk that keeps, for each file, what was synchronised last: that is what a power cut leaves.
class Disk {
public:
    static void PutUnderSQLite() {
        static sqlite3_vfs vfs = *sqlite3_vfs_find(nullptr);
        sPlain = sqlite3_vfs_find(nullptr);
        vfs.zName = "disk";
        vfs.xOpen = Open;
        sqlite3_vfs_register(&vfs, 1);
    }
    static void TakeAway() {
        sqlite3_vfs_register(sPlain, 1);
        sqlite3_vfs_unregister(sqlite3_vfs_find("disk"));
    }
    /// What stands in the file's place after a power cut, with its log beside it.
    static void CutPower(const std::string& file, const std::string& after) {
        for (const char* const suffix : {"", "-wal"})
            std::ofstream(after + suffix, std::ios::binary) << sSynchronised[file + suffix];
    }

private:
    static int Open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* out) {
        const int code = sPlain->xOpen(vfs, name, file, flags, out);
        if (code != SQLITE_OK || !name)
            return code;
        // Databases and logs have different methods, of which the synchronising is the same.
        static std::map<const sqlite3_io_methods*, sqlite3_io_methods> tables;
        sSync = file->pMethods->xSync;
        sqlite3_io_methods& methods =
            tables.try_emplace(file->pMethods, *file->pMethods).first->second;
        methods.xSync = Sync;
        file->pMethods = &methods;
        sNames[file] = name;
        return code;
    }
    static int Sync(sqlite3_file* file, int flags) {
        std::ifstream content(sNames[file], std::ios::binary);
        sSynchronised[sNames[file]] = {std::istreambuf_iterator<char>(content), {}};
        return sSync(file, flags);
    }

    inline static sqlite3_vfs* sPlain = nullptr;
    inline static int (*sSync)(sqlite3_file*, int) = nullptr;
    inline static std::map<sqlite3_file*, std::string> sNames;
    inline static std::map<std::string, std::string> sSynchronised;
};

class ChangesTest : public MidiTest {
protected:
    const MIDIDeviceRef fDevice = AddInterface("Interface", 1);
};

TEST_F(ChangesTest, SurviveAPowerCutOnceTheyAreConfirmed) {
    Disk::PutUnderSQLite();
    const std::string file = fFile.parent_path() / "disk.sqlite3";
    Use(file);
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    SetNumber(device, "single", 1);
    MIDIChanges together;
    SetNumber(device, "group", 2);
    SetNumber(device, "position", 3);
    EXPECT_EQ(together.End(), noErr);
    {
        const MIDIChanges unfinished;
        SetNumber(device, "group", 4);
        Disk::CutPower(file, file + ".after");
    }
    Use(file + ".after");
    Disk::TakeAway();
    EXPECT_EQ(Number(device, "single"), 1);
    EXPECT_EQ(Number(device, "group"), 2);
    EXPECT_EQ(Number(device, "position"), 3);
}

TEST_F(ChangesTest, ComeTogetherOrNotAtAll) {
    EXPECT_EQ(KestrinMIDIEndChanges(), kMIDINotPermitted);
    for (const bool isAbandoned : {false, true}) {
        MIDIChanges outer;
        SetNumber(fDevice, "group", 1);
        const MIDIDeviceRef added = AddInterface("Second", 1);
        EXPECT_EQ(NameOf(added), "Second");
        {
            MIDIChanges inner;
            SetNumber(fDevice, "group", 2);
            if (isAbandoned)
                MIDIChanges();
            else
                EXPECT_EQ(MIDIObjectSetIntegerProperty(fDevice, kMIDIPropertyUniqueID, ID(added)),
                          kMIDIIDNotUnique);
            EXPECT_NE(MIDISetupRemoveDevice(fDevice), noErr) << "nothing follows a failure";
            EXPECT_NE(inner.End(), noErr);
        }
        EXPECT_EQ(outer.End(),
                  isAbandoned ? OSStatus(kKestrinMIDIErrAbandoned) : OSStatus(kMIDIIDNotUnique));
        EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
        EXPECT_EQ(Number(fDevice, "group"), std::nullopt);
    }
    MIDIChanges outer;
    EXPECT_EQ(MIDIChanges().End(), noErr);
    SetNumber(fDevice, "group", 3);
    EXPECT_EQ(QueryInteger(OpenFile().get(), "SELECT count(*) FROM properties WHERE value=3", -1),
              0);
}

TEST_F(ChangesTest, OfOtherThreadsWait) {
    SetNumber(fDevice, "group", 0);
    MIDIChanges changes;
    std::thread thread([&] { SetNumber(fDevice, "group", *Number(fDevice, "group") + 2); });
    SetNumber(fDevice, "group", 40);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(Number(fDevice, "group"), 40);
    EXPECT_EQ(changes.End(), noErr);
    thread.join();
    EXPECT_EQ(Number(fDevice, "group"), 42);
}

TEST_F(ChangesTest, WaitOnceForALockThatStays) {
    const UnitFacts known{.serial = "1"};
    PlugIn(SequencerWith({known}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 2u);
    const ConnectionHolder other = OpenFile();
    PlugIn(SequencerWith({}));
    EXPECT_EQ(Number(fDevice, "group"), std::nullopt);
    ASSERT_EQ(Execute(other.get(), "BEGIN IMMEDIATE"), SQLITE_OK);
    const auto start = std::chrono::steady_clock::now();
    PlugIn(SequencerWith({{.serial = "1", .path = "dummy_hcd.7-1"}}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 2u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4))
        << "a known unit at another place waits for nobody";
    EXPECT_EQ(KestrinMIDIBeginChanges(), kKestrinMIDIErrLocked);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(MIDIObjectSetIntegerProperty(fDevice, CFSTR("group"), i), kKestrinMIDIErrLocked);
    PlugIn(SequencerWith({known, {.card = 1, .serial = "2"}}));
    EXPECT_EQ(MIDIGetNumberOfSources(), 2u) << "the interface's and that of the known unit";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
    ASSERT_EQ(Execute(other.get(), "COMMIT"), SQLITE_OK);
    EXPECT_EQ(MIDIGetNumberOfSources(), 3u) << "with that of the unit that is new";
    SetNumber(fDevice, "group", 5);
    EXPECT_EQ(TextOf(KestrinMIDICopyStatusText(kKestrinMIDIErrLocked)),
              "Another program keeps the MIDI database locked.");
}

} // namespace
