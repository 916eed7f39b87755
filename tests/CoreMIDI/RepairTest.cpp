#include "tests/CoreMIDI/MidiTest.h"

#include <fstream>

namespace {

class RepairTest : public MidiTest {
protected:
    KestrinMIDIRepairCounts Repair() {
        CFStringRef savedAs = nullptr;
        KestrinMIDIRepairCounts counts{};
        EXPECT_EQ(KestrinMIDIRepairDatabase(&savedAs, &counts), noErr);
        fSavedAs = savedAs ? TextOf(savedAs) : "";
        EXPECT_EQ(fSavedAs.find(fFile.string() + ".damaged-20"), 0u) << fSavedAs;
        EXPECT_TRUE(std::filesystem::exists(fSavedAs));
        EXPECT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseReady);
        EXPECT_EQ(KestrinMIDICopyDatabaseDamage(), nullptr);
        return counts;
    }

    std::string fSavedAs;
};

TEST_F(RepairTest, LeavesAHealthyAndANewerFileAlone) {
    AddInterface("Interface");
    EXPECT_EQ(KestrinMIDIRepairDatabase(nullptr, nullptr), kMIDINotPermitted);
    RunSQL("PRAGMA user_version=99");
    EXPECT_EQ(KestrinMIDIRepairDatabase(nullptr, nullptr), kMIDINotPermitted);
    EXPECT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseNewer);
}

TEST_F(RepairTest, SavesWhatStandsAroundTheDamage) {
    for (int i = 0; i < 200; ++i)
        AddInterface(("Interface " + std::to_string(i)).c_str());
    const MIDIDeviceRef first = MIDIGetDevice(0);
    const MIDIUniqueID id = UniqueIDOf(first);
    MIDIRestart();
    // One leaf page of the properties.
    const std::int64_t page =
        QueryFile("SELECT pageno FROM dbstat WHERE name='properties' AND pagetype='leaf' "
                  "ORDER BY path LIMIT 1 OFFSET 3");
    ASSERT_GT(page, 1);
    std::fstream file(fFile, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp((page - 1) * 4096);
    file << std::string(4096, '\xAA');
    file.close();
    ASSERT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseDamaged);

    const KestrinMIDIRepairCounts counts = Repair();
    EXPECT_EQ(counts.objects, 800u);
    EXPECT_GT(counts.properties, 500u);
    EXPECT_LT(counts.properties, 1000u);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 200u);
    EXPECT_EQ(UniqueIDOf(first), id);
    EXPECT_EQ(NameOf(first), "Interface 0");
    EXPECT_EQ(NameOf(MIDIGetDevice(199)), "Interface 199");
}

TEST_F(RepairTest, BeginsAnewWhereNothingCanBeRead) {
    AddInterface("Interface");
    MIDIRestart();
    std::ofstream(fFile, std::ios::binary) << std::string(8192, 'x');
    const KestrinMIDIRepairCounts counts = Repair();
    EXPECT_EQ(counts.objects, 0u);
    AddInterface("New");
    EXPECT_EQ(MIDIGetNumberOfDevices(), 1u);
    // A second damage on the same day gets a name of its own.
    const std::string before = fSavedAs;
    MIDIRestart();
    std::ofstream(fFile, std::ios::binary) << std::string(8192, 'y');
    Repair();
    EXPECT_NE(fSavedAs, before);
}

TEST_F(RepairTest, DropsWhatMakesNoSense) {
    const MIDIDeviceRef device = AddInterface("Interface");
    RunSQL("INSERT INTO properties VALUES(999,'name','of nobody'),(" + std::to_string(device) +
           ",'half',1.5)");
    EXPECT_NE(TextOf(KestrinMIDICopyDatabaseDamage()), "");
    EXPECT_EQ(Repair().lost, 2u);
    EXPECT_EQ(NameOf(device), "Interface");
}

} // namespace
