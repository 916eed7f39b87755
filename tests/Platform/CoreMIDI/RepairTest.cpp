#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <fstream>
#include <new>

namespace {

/// How many names the process may still change before it is killed; negative: no end.
int sStepsToLive = -1;

void Step() {
    if (sStepsToLive >= 0 && sStepsToLive-- == 0)
        raise(SIGKILL);
}

} // namespace

extern "C" int rename(const char* from, const char* to) noexcept {
    Step();
    return renameat(AT_FDCWD, from, AT_FDCWD, to);
}

extern "C" int link(const char* from, const char* to) noexcept {
    Step();
    return linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
}

extern "C" int remove(const char* file) noexcept {
    Step();
    return unlinkat(AT_FDCWD, file, 0);
}

namespace {

class RepairTest : public MidiTest {
protected:
    KestrinMIDIRepairCounts Repair() {
        CFStringRef savedAs = nullptr;
        KestrinMIDIRepairCounts counts{};
        EXPECT_EQ(KestrinMIDIRepairDatabase(&savedAs, &counts), noErr);
        fSavedAs = savedAs ? TextOf(savedAs) : "";
        EXPECT_THAT(fSavedAs, testing::StartsWith(fFile.string() + ".damaged-20"));
        EXPECT_TRUE(std::filesystem::exists(fSavedAs));
        EXPECT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseReady);
        EXPECT_EQ(KestrinMIDICopyDatabaseDamage(), nullptr);
        return counts;
    }
    void AddNonsense() {
        RunSQL("INSERT INTO properties VALUES(" + std::to_string(fDevice) + ",'half',1.5)");
    }

    const MIDIDeviceRef fDevice = AddInterface("Interface", 1);
    const MIDIUniqueID fID = ID(fDevice);
    std::string fSavedAs;
};

TEST_F(RepairTest, LeavesAHealthyAndANewerFileAlone) {
    EXPECT_EQ(KestrinMIDIRepairDatabase(nullptr, nullptr), kMIDINotPermitted);
    RunSQL("PRAGMA user_version=99");
    EXPECT_EQ(KestrinMIDIRepairDatabase(nullptr, nullptr), kMIDINotPermitted);
    EXPECT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseNewer);
}

TEST_F(RepairTest, SavesWhatStandsAroundTheDamage) {
    for (int i = 1; i < 200; ++i)
        AddInterface("Interface " + std::to_string(i), 1);
    // Two leaf pages of the properties.
    std::vector<std::int64_t> pages;
    for (const char* const leaf : {"1", "3"}) {
        const auto sql = std::string("SELECT pageno FROM dbstat WHERE name='properties' AND "
                                     "pagetype='leaf' ORDER BY path LIMIT 1 OFFSET ") +
                         leaf;
        pages.push_back(QueryInteger(OpenFile().get(), sql.c_str(), -1));
    }
    MIDIRestart();
    for (const std::int64_t page : pages) {
        std::fstream file(fFile, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp((page - 1) * 4096);
        file << std::string(4096, '\xAA');
    }
    ASSERT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseDamaged);

    const KestrinMIDIRepairCounts counts = Repair();
    EXPECT_EQ(counts.objects, 800u);
    const std::size_t lost = 1000 - counts.properties;
    EXPECT_GT(lost, 50u);
    EXPECT_LT(lost, 400u);
    // An entity has two properties, a device three.
    EXPECT_GE(counts.unreadable, lost / 3);
    EXPECT_LE(counts.unreadable, lost);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 200u);
    EXPECT_EQ(ID(fDevice), fID);
    EXPECT_EQ(NameOf(fDevice), "Interface");
    EXPECT_EQ(NameOf(MIDIGetDevice(199)), "Interface 199");
}

TEST_F(RepairTest, BeginsAnewWhereNothingCanBeRead) {
    std::string before;
    // A second damage on the same day gets a name of its own.
    for (int round = 0; round < 2; ++round, before = fSavedAs) {
        MIDIRestart();
        std::ofstream(fFile, std::ios::binary) << std::string(8192, 'x');
        EXPECT_EQ(Repair().objects, 0u);
        EXPECT_NE(fSavedAs, before);
        AddInterface("New", 1);
        EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
    }
}

TEST_F(RepairTest, DropsWhatMakesNoSense) {
    AddNonsense();
    RunSQL("INSERT INTO properties VALUES(999,'name','of nobody')");
    EXPECT_NE(TextOf(KestrinMIDICopyDatabaseDamage()), "");
    EXPECT_EQ(Repair().lost, 2u);
    EXPECT_EQ(NameOf(fDevice), "Interface");
}

TEST_F(RepairTest, KilledAtAnyStepLeavesTheObjectsAndIsClearedUpByTheNext) {
    const std::filesystem::path link = fFile.parent_path() / "link";
    std::filesystem::create_symlink(fFile, link);
    Use(link);
    int steps = 0;
    for (bool isKilled = true; isKilled; ++steps) {
        AddNonsense();
        isKilled = End(Start([&] {
                       sStepsToLive = steps;
                       KestrinMIDIRepairDatabase(nullptr, nullptr);
                   })) == -SIGKILL;
        EXPECT_EQ(NameOf(fDevice), "Interface") << steps;
        MIDIRestart();
        if (!TextOf(KestrinMIDICopyDatabaseDamage()).empty())
            Repair();
        MIDIRestart();
        std::vector<std::string> others;
        for (const auto& file : std::filesystem::directory_iterator(fFile.parent_path())) {
            if (file.path() != fFile && file.path() != link)
                others.push_back(file.path());
        }
        ASSERT_THAT(others, testing::ElementsAre(testing::HasSubstr(".damaged-"))) << steps;
        std::filesystem::remove(others[0]);
    }
    EXPECT_GT(steps, 5);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
}

TEST_F(RepairTest, LosesNothingThatOthersConfirmMeanwhile) {
    void* const shared =
        mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto& confirmed = *new (shared) std::atomic<int>(0);
    const pid_t child = Start([&] {
        for (int i = 1;; ++i) {
            usleep(500);
            if (MIDIObjectSetIntegerProperty(fDevice, CFSTR("count"), i) == noErr)
                confirmed = i;
        }
    });
    for (int round = 0; round < 10; ++round) {
        AddNonsense();
        for (const int before = confirmed; confirmed == before;)
            usleep(1000);
        Repair();
        EXPECT_TRUE(std::filesystem::exists(fSavedAs + "-wal"));
    }
    kill(child, SIGKILL);
    EXPECT_EQ(End(child), -SIGKILL);
    EXPECT_GT(confirmed, 10);
    EXPECT_GE(Number(fDevice, "count").value_or(0), confirmed.load());
    munmap(shared, sizeof(int));
}

} // namespace
