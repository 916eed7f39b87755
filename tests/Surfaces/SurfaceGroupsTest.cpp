#include "Surfaces/SurfaceGroups.h"

#include "tests/support/TestStudio.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <set>

namespace {

constexpr SInt32 kLeast = std::numeric_limits<SInt32>::min();
constexpr SInt32 kMost = std::numeric_limits<SInt32>::max();

/// The search as one would do it by hand: one more until it is free.
SInt32 FreePositionByHand(const std::vector<MidiDevice>& devices, std::size_t index) {
    std::set<std::int64_t> taken;
    for (std::size_t other = 0; other < devices.size(); ++other) {
        if (other != index && devices[other].groupID == devices[index].groupID)
            taken.insert(devices[other].groupPosition);
    }
    std::int64_t candidate = devices[index].groupPosition;
    while (taken.contains(candidate))
        ++candidate;
    return candidate < 0 || candidate > 127 ? 127 : static_cast<SInt32>(candidate);
}

TEST(NormaliseGroupPositions, EqualsTheSearchByHandOnRandomLists) {
    std::mt19937 random(20261121);
    const std::vector<std::pair<SInt32, SInt32>> ranges{
        {0, 5}, {-6, 3}, {120, 130}, {-40, 140}, {kLeast, kLeast + 3}, {kMost - 3, kMost}};
    for (int round = 0; round < 3000; ++round) {
        const auto [first, last] = ranges[random() % ranges.size()];
        std::uniform_int_distribution<SInt32> position(first, last);
        std::vector<MidiDevice> devices(random() % 40);
        for (MidiDevice& device : devices) {
            device.groupID = static_cast<SInt32>(random() % 3);
            device.groupPosition = position(random);
        }
        std::vector<MidiDevice> byHand = devices;
        NormaliseGroupPositions(devices);
        for (std::size_t i = 0; i < byHand.size(); ++i) {
            const SInt32 free = FreePositionByHand(byHand, i);
            ASSERT_EQ(FreeGroupPosition(byHand, i), free) << "round " << round;
            ASSERT_EQ(devices[i].groupPosition, free) << "round " << round;
            byHand[i].groupPosition = free;
        }
    }
}

class StoredGroupSettings : public testing::Test {
protected:
    MidiDevice RecordOf(MIDIDeviceRef surface) {
        MidiDevice record;
        record.uniqueID = fStudio.ID(surface);
        StoreGroupDefaults({&record, 1});
        return record;
    }

    TestStudio fStudio;
    MIDIDeviceRef fSurface = fStudio.AddExternal("Surface", "Mackie", "HUI");
};

TEST_F(StoredGroupSettings, AreReadEachForItselfAndGetDefaultsWhenTheyAreNoNumber) {
    fStudio.SetNumber(fSurface, kGroupIDKey, 7);
    fStudio.SetText(fSurface, kGroupPositionKey, "4");
    const MidiDevice record = RecordOf(fSurface);
    EXPECT_EQ(record.groupID, 7);
    EXPECT_EQ(record.groupPosition, record.uniqueID);
    EXPECT_EQ(fStudio.Number(fSurface, kGroupPositionKey), record.uniqueID);
}

TEST_F(StoredGroupSettings, AreWrittenUpToTheFirstSurfaceThatIsGone) {
    const MIDIDeviceRef gone = fStudio.AddExternal("Gone", "Mackie", "HUI");
    const MIDIDeviceRef last = fStudio.AddExternal("Last", "Mackie", "HUI");
    std::vector<MidiDevice> records{RecordOf(fSurface), RecordOf(gone), RecordOf(last)};
    for (MidiDevice& record : records) {
        record.groupID = 3;
        record.groupPosition = 9;
    }
    MIDISetupRemoveExternalDevice(gone);
    WriteGroupSettings(records);

    EXPECT_EQ(fStudio.Number(fSurface, kGroupIDKey), 3);
    EXPECT_EQ(fStudio.Number(fSurface, kGroupPositionKey), 9);
    EXPECT_EQ(fStudio.Number(last, kGroupIDKey), 0);
}

} // namespace
