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

TEST(DeviceMatching, KnowsAUnitOfItsOwnKindOrSerialAtAnyPlace) {
    EXPECT_EQ(Matched({Unit("SN001", "a"), Unit("SN002", "b")},
                      {Unit("SN002", "a"), Unit("SN001", "c"), Unit("SN003", "b")}),
              (Indices{1, 0, -1}));
    EXPECT_EQ(Matched({Unit("", "a")}, {Unit("", "b")}), Indices{0});
    EXPECT_EQ(Matched({Unit("SN001", "a")}, {Unit("SN001", "b", "usb 0a73:0006", "Model v2"),
                                             Unit("SN001", "a", "usb 0a73:0007")}),
              (Indices{0, -1}));
}

TEST(DeviceMatching, KnowsEqualUnitsByTheirPlacesAndTheOneThatMoved) {
    for (const char* const serial : {"", "the same"}) {
        const std::vector<HardwareRecord> known = {Unit(serial, "a"), Unit(serial, "b")};
        EXPECT_EQ(Matched(known, {Unit(serial, "b"), Unit(serial, "a")}), (Indices{1, 0}));
        EXPECT_EQ(Matched(known, {Unit(serial, "c"), Unit(serial, "a")}), (Indices{1, 0}));
        EXPECT_EQ(Matched(known, {Unit(serial, "b")}), Indices{1});
        // It may be either of them, or a third: nothing is guessed.
        EXPECT_EQ(Matched(known, {Unit(serial, "c")}), Indices{-1});
        EXPECT_EQ(Matched({known[0]}, {Unit(serial, "b"), Unit(serial, "a")}), (Indices{-1, 0}));
    }
    // Programs may have ports of equal names, or of none.
    const HardwareRecord nameless{"program ", "", "", "", ""};
    EXPECT_EQ(Matched({nameless, nameless}, {nameless, nameless, nameless}), (Indices{0, 1, -1}));
}

TEST(DeviceMatching, TellsProductsOfOneKindByTheirTexts) {
    const auto unit = [](const char* place, const char* manufacturer, const char* name) {
        return HardwareRecord{"usb 1d6b:0101", "", place, manufacturer, name};
    };
    const std::vector<HardwareRecord> two = {unit("a", "Maker", "One"), unit("b", "Maker", "Two")};
    EXPECT_EQ(Matched(two, {unit("b", "Maker", "One"), unit("a", "Maker", "Two")}),
              (Indices{0, 1}));
    // New firmware: at its place, and elsewhere where no other is left.
    EXPECT_EQ(Matched(two, {unit("b", "Maker", "Two v2")}), Indices{1});
    EXPECT_EQ(Matched(two, {unit("a", "Maker", "One"), unit("c", "New Maker", "Two")}),
              (Indices{0, 1}));
    EXPECT_EQ(Matched(two, {unit("c", "Maker", "Two v2")}), Indices{-1});
    // Strangers, the last beside an earlier unit of its maker's at one place.
    EXPECT_EQ(Matched({two[0]}, {unit("a", "Other", "Else")}), Indices{-1});
    EXPECT_EQ(Matched({unit("a", "", "One")}, {unit("b", "", "Else")}), Indices{-1});
    EXPECT_EQ(Matched({unit("a", "Other", "Else"), two[0]}, {unit("a", "Maker", "Three")}),
              Indices{1});
}

} // namespace
