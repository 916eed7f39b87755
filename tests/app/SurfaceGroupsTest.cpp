#include "app/SurfaceGroups.h"

#include "tests/support/TestStudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <random>

namespace {

using testing::ElementsAre;

constexpr SInt32 kLeast = std::numeric_limits<SInt32>::min();
constexpr SInt32 kMost = std::numeric_limits<SInt32>::max();

MidiDevice Surface(SInt32 group, SInt32 position) {
    MidiDevice device;
    device.groupID = group;
    device.groupPosition = position;
    return device;
}

std::vector<MidiDevice> SurfacesAt(const std::vector<SInt32>& positions) {
    std::vector<MidiDevice> devices;
    for (const SInt32 position : positions)
        devices.push_back(Surface(0, position));
    return devices;
}

std::vector<SInt32> PositionsOf(const std::vector<MidiDevice>& devices) {
    std::vector<SInt32> positions;
    for (const MidiDevice& device : devices)
        positions.push_back(device.groupPosition);
    return positions;
}

std::vector<SInt32> NormalisedPositions(const std::vector<SInt32>& positions) {
    std::vector<MidiDevice> devices = SurfacesAt(positions);
    NormaliseGroupPositions(devices);
    return PositionsOf(devices);
}

bool IsTaken(const std::vector<MidiDevice>& devices, std::size_t index, std::int64_t candidate) {
    for (std::size_t other = 0; other < devices.size(); ++other) {
        if (other != index && devices[other].groupID == devices[index].groupID &&
            devices[other].groupPosition == candidate)
            return true;
    }
    return false;
}

/// The search as one would do it by hand: one more, and look at all records again.
SInt32 FreePositionByHand(const std::vector<MidiDevice>& devices, std::size_t index) {
    std::int64_t candidate = devices[index].groupPosition;
    while (IsTaken(devices, index, candidate))
        ++candidate;
    return candidate < 0 || candidate > 127 ? 127 : static_cast<SInt32>(candidate);
}

TEST(FreeGroupPosition, PassesOverWhatTheGroupHasTaken) {
    std::vector<MidiDevice> devices = SurfacesAt({3, 3, 4, 6});
    devices.push_back(Surface(1, 5));
    EXPECT_EQ(FreeGroupPosition(devices, 0), 5) << "later records count, those of other groups not";
    EXPECT_EQ(FreeGroupPosition(devices, 1), 5);
    EXPECT_EQ(FreeGroupPosition(devices, 2), 4);
    EXPECT_EQ(FreeGroupPosition(devices, 4), 5);
}

TEST(FreeGroupPosition, EndsAtTheLastPositionTakenOrNot) {
    EXPECT_EQ(FreeGroupPosition(SurfacesAt({200}), 0), 127);
    EXPECT_EQ(FreeGroupPosition(SurfacesAt({126, 126, 127}), 0), 127);
    EXPECT_EQ(FreeGroupPosition(SurfacesAt({kMost, kMost}), 0), 127);
    EXPECT_EQ(FreeGroupPosition(SurfacesAt({-1}), 0), 127);
    EXPECT_EQ(FreeGroupPosition(SurfacesAt({kLeast, kLeast}), 0), 127);
    EXPECT_EQ(FreeGroupPosition(SurfacesAt({-2, -1, -2, 0}), 0), 1)
        << "counting up from below zero may reach a position that is free";
}

TEST(NormaliseGroupPositions, GivesEachRecordAPlaceInTurn) {
    EXPECT_THAT(NormalisedPositions({3, 3}), ElementsAre(4, 3));
    EXPECT_THAT(NormalisedPositions({3, 3, 3}), ElementsAre(4, 5, 3));
    EXPECT_THAT(NormalisedPositions({200, 200}), ElementsAre(127, 127));
    EXPECT_THAT(NormalisedPositions({-1, -2, -2}), ElementsAre(127, 127, 127))
        << "the first frees -1, where the search of the second ends";
    EXPECT_THAT(NormalisedPositions({}), ElementsAre());
}

TEST(NormaliseGroupPositions, EqualsTheSearchByHandOnRandomLists) {
    std::mt19937 random(20261121);
    const std::vector<std::pair<SInt32, SInt32>> ranges{
        {0, 5}, {-6, 3}, {120, 130}, {-40, 140}, {kLeast, kLeast + 3}, {kMost - 3, kMost}};
    for (int round = 0; round < 3000; ++round) {
        const auto [first, last] = ranges[random() % ranges.size()];
        std::uniform_int_distribution<SInt32> position(first, last);
        std::vector<MidiDevice> devices(random() % 40);
        for (MidiDevice& device : devices)
            device = Surface(static_cast<SInt32>(random() % 3) - 1, position(random));

        std::vector<MidiDevice> byHand = devices;
        for (std::size_t i = 0; i < byHand.size(); ++i) {
            ASSERT_EQ(FreeGroupPosition(byHand, i), FreePositionByHand(byHand, i));
            byHand[i].groupPosition = FreePositionByHand(byHand, i);
        }
        const std::vector<SInt32> before = PositionsOf(devices);
        NormaliseGroupPositions(devices);
        ASSERT_EQ(PositionsOf(devices), PositionsOf(byHand)) << testing::PrintToString(before);
    }
}

TEST(NormaliseGroupPositions, TakesTenThousandOfOneGroupAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    std::vector<SInt32> positions(10000, -20000);
    for (SInt32 i = 5000; i < 10000; ++i)
        positions[static_cast<std::size_t>(i)] = -20000 + i;
    NormalisedPositions(positions);
    NormalisedPositions(std::vector<SInt32>(10000, 0));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(EnteredSettings, AreKeptCrosswiseOnASwitchAndStraightOnConfirming) {
    MidiDevice device;
    KeepSettingsOnSwitch(device, 2, 5);
    EXPECT_EQ(device.groupID, 5);
    EXPECT_EQ(device.groupPosition, 2);
    KeepSettingsOnConfirm(device, 2, 5);
    EXPECT_EQ(device.groupID, 2);
    EXPECT_EQ(device.groupPosition, 5);
}

class StoredGroupSettings : public testing::Test {
protected:
    MidiDevice RecordOf(MIDIDeviceRef surface) {
        MidiDevice record;
        record.uniqueID = fStudio.ID(surface);
        ReadGroupSettings(surface, record);
        return record;
    }

    TestStudio fStudio;
    MIDIDeviceRef fSurface = fStudio.AddExternal("Surface", "Mackie", "HUI");
};

TEST_F(StoredGroupSettings, GetTheirDefaultsWhenTheyAreFirstRead) {
    const MidiDevice record = RecordOf(fSurface);
    EXPECT_EQ(record.groupPosition, record.uniqueID);
    EXPECT_EQ(record.groupID, 0);
    EXPECT_EQ(fStudio.Number(fSurface, kGroupPositionKey), record.uniqueID);
    EXPECT_EQ(fStudio.Number(fSurface, kGroupIDKey), 0);
}

TEST_F(StoredGroupSettings, AreReadEachForItselfAndReplacedWhenTheyAreNoNumber) {
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
    for (MidiDevice& record : records)
        KeepSettingsOnConfirm(record, 3, 9);
    MIDISetupRemoveExternalDevice(gone);
    WriteGroupSettings(records);

    EXPECT_EQ(fStudio.Number(fSurface, kGroupIDKey), 3);
    EXPECT_EQ(fStudio.Number(fSurface, kGroupPositionKey), 9);
    EXPECT_EQ(fStudio.Number(last, kGroupIDKey), 0);
}

} // namespace
