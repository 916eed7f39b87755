#include "Platform/CoreMIDI/Live/DeviceMatching.h"

#include <gtest/gtest.h>

using namespace KestrinMIDI;

namespace {

using Indices = std::vector<int>;

HardwareRecord Unit(const char* serial, const char* place, const char* kind = "usb 0a73:0006",
                    const char* name = "Model") {
    return {kind, serial, place, "Maker", name};
}

/// The known unit that each live one is; -1 for a new one.
Indices Matched(const std::vector<HardwareRecord>& known, const std::vector<HardwareRecord>& live) {
    Indices indices;
    for (const auto& match : MatchUnits(known, live))
        indices.push_back(match ? static_cast<int>(*match) : -1);
    return indices;
}

TEST(DeviceMatching, KnowsAUnitThatIsNotLikeOthersAtAnyPlace) {
    EXPECT_EQ(Matched({Unit("SN001", "a"), Unit("SN002", "b")},
                      {Unit("SN002", "a"), Unit("SN001", "c"), Unit("SN003", "b")}),
              (Indices{1, 0, -1}));
    EXPECT_EQ(Matched({Unit("", "a")}, {Unit("", "b")}), Indices{0});
    EXPECT_EQ(Matched({Unit("SN001", "a")}, {Unit("SN001", "b", "usb 0a73:0006", "Model v2"),
                                             Unit("SN001", "a", "usb 0a73:0007")}),
              (Indices{0, -1}));
}

TEST(DeviceMatching, KnowsUnitsThatAreAlikeByTheirPlaces) {
    for (const char* const serial : {"", "the same"}) {
        const std::vector<HardwareRecord> known = {Unit(serial, "a"), Unit(serial, "b")};
        EXPECT_EQ(Matched(known, {Unit(serial, "b"), Unit(serial, "a")}), (Indices{1, 0}));
        EXPECT_EQ(Matched(known, {Unit(serial, "b")}), Indices{1});
        // It may be either of them, or a third: nothing is guessed.
        EXPECT_EQ(Matched(known, {Unit(serial, "c")}), Indices{-1});
        EXPECT_EQ(Matched({known[0]}, {Unit(serial, "b"), Unit(serial, "a")}), (Indices{-1, 0}));
    }
    // Programs may have ports of equal names.
    EXPECT_EQ(Matched({Unit("", ""), Unit("", "")}, {Unit("", ""), Unit("", ""), Unit("", "")}),
              (Indices{0, 1, -1}));
}

} // namespace
