#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <fstream>

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

} // namespace
