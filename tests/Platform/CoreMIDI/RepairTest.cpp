#include "tests/Platform/CoreMIDI/MidiTest.h"

#include <fstream>

namespace {

using RepairTest = MidiTest;

TEST_F(RepairTest, SavesWhatStandsAroundTheDamage) {
    const MIDIDeviceRef device = AddInterface("Interface", 1);
    const MIDIUniqueID id = ID(device);
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
    std::fstream file(fFile, std::ios::in | std::ios::out | std::ios::binary);
    for (const std::int64_t page : pages) {
        file.seekp((page - 1) * 4096);
        file << std::string(4096, '\xAA');
    }
    file.seekp(18); // a version of the format in which only later ones may write
    file.put(3);
    file.close();
    ASSERT_EQ(KestrinMIDIGetDatabaseState(), kKestrinMIDIDatabaseDamaged);

    CFStringRef savedAs = nullptr;
    KestrinMIDIRepairCounts counts{};
    EXPECT_EQ(KestrinMIDIRepairDatabase(&savedAs, &counts), noErr);
    EXPECT_THAT(TextOf(savedAs), testing::StartsWith(fFile.string() + ".damaged-20"));
    EXPECT_EQ(KestrinMIDICopyDatabaseDamage(), nullptr);
    EXPECT_EQ(counts.objects, 800u);
    const std::size_t lost = 1000 - counts.properties;
    EXPECT_GT(lost, 50u);
    EXPECT_LT(lost, 400u);
    // An entity has two properties, a device three.
    EXPECT_GE(counts.unreadable, lost / 3);
    EXPECT_LE(counts.unreadable, lost);
    EXPECT_EQ(MIDIGetNumberOfDevices(), 200u);
    EXPECT_EQ(ID(device), id);
    EXPECT_EQ(NameOf(device), "Interface");
    EXPECT_EQ(NameOf(MIDIGetDevice(199)), "Interface 199");
}

} // namespace
