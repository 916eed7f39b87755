#include "Platform/CoreMIDI/DeviceMatching.h"

#include <gtest/gtest.h>

namespace {

using Indices = std::vector<int>;

HardwareRecord Unit(const char* serial, const char* place) {
    return {"usb 0a73:0006", serial, place, "Maker", "Model"};
}

/// The known unit that each live one is; -1 for a new one.
Indices Matched(const std::vector<HardwareRecord>& known, const std::vector<HardwareRecord>& live) {
    Indices indices;
    for (const auto& match : MatchUnits(known, live))
        indices.push_back(match ? static_cast<int>(*match) : -1);
    return indices;
}

TEST(DeviceMatching, KnowsAUnitByItsSerialAtAnyPlace) {
    EXPECT_EQ(Matched({Unit("SN001", "a"), Unit("SN002", "b")},
                      {Unit("SN002", "a"), Unit("SN001", "c"), Unit("SN003", "b")}),
              (Indices{1, 0, -1}));
    HardwareRecord renamed = Unit("SN001", "b");
    renamed.name = "Model v2";
    EXPECT_EQ(Matched({Unit("SN001", "a")}, {renamed}), Indices{0});
    HardwareRecord otherProduct = Unit("SN001", "a");
    otherProduct.kind = "usb 0a73:0007";
    EXPECT_EQ(Matched({Unit("SN001", "a")}, {otherProduct}), Indices{-1});
}

TEST(DeviceMatching, KnowsALoneUnitWithoutSerialAtAnyPlace) {
    EXPECT_EQ(Matched({Unit("", "a")}, {Unit("", "b")}), Indices{0});
}

TEST(DeviceMatching, KnowsUnitsThatAreAlikeByTheirPlaces) {
    for (const char* const serial : {"", "the same"}) {
        const std::vector<HardwareRecord> known = {Unit(serial, "a"), Unit(serial, "b")};
        EXPECT_EQ(Matched(known, {Unit(serial, "b"), Unit(serial, "a")}), (Indices{1, 0}));
        EXPECT_EQ(Matched(known, {Unit(serial, "b")}), Indices{1});
        // It may be either of them, or a third: nothing is guessed.
        EXPECT_EQ(Matched(known, {Unit(serial, "c")}), Indices{-1});
        EXPECT_EQ(Matched(known, {Unit(serial, "a"), Unit(serial, "c")}), (Indices{0, -1}));
        EXPECT_EQ(Matched({known[0]}, {Unit(serial, "b"), Unit(serial, "c")}), (Indices{-1, -1}));
        EXPECT_EQ(Matched({known[0]}, {Unit(serial, "b"), Unit(serial, "a")}), (Indices{-1, 0}));
    }
}

TEST(DeviceMatching, PairsEqualPlacesInTheirOrder) {
    const std::vector<HardwareRecord> two = {Unit("", ""), Unit("", "")};
    EXPECT_EQ(Matched(two, {Unit("", ""), Unit("", ""), Unit("", "")}), (Indices{0, 1, -1}));
}

} // namespace
