#include "tools/surface-ports/PortKeeper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace SurfacePorts;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// A sequencer as mixers and units see it: what is open, and which unit is reached by which port.
class FakeSequencer final : public Sequencer {
public:
    bool OpenGroup(SInt32 group, const std::string& name) override {
        if (fNames.size() == fRoom)
            return false;
        ++fOpenings;
        fNames[group] = name;
        return true;
    }
    void CloseGroup(SInt32 group) override { fNames.erase(group); }
    bool OpenPort(SInt32 group, int port, const std::string& name) override {
        EXPECT_EQ(static_cast<std::size_t>(port), fPorts[group].size());
        ++fOpenings;
        fPorts[group].push_back(name);
        return true;
    }
    void RenamePort(SInt32 group, int port, const std::string& name) override {
        fPorts[group].at(static_cast<std::size_t>(port)) = name;
    }
    void ClosePort(SInt32 group, int port) override {
        EXPECT_EQ(static_cast<std::size_t>(port) + 1, fPorts[group].size());
        fPorts[group].pop_back();
    }
    LinkState Link(MIDIUniqueID unit, Direction direction, const Address& address) override {
        if (address == fHeld)
            return LinkState::Held;
        EXPECT_TRUE(direction == Direction::ToUnit || fAddresses.contains(unit))
            << "what its mixer answers would be lost";
        fAddresses[unit] = address.client;
        return LinkState::Linked;
    }
    void Unlink(MIDIUniqueID unit, Direction) override { fAddresses.erase(unit); }
    void Forget(MIDIUniqueID unit) override { fAddresses.erase(unit); }
    void SetRoutes(const std::vector<Route>& routes) override { fRoutes = routes; }

    /// "1 Left -> 16" for each port of a group, with the client of the unit that it reaches.
    std::vector<std::string> Seen(SInt32 group) {
        std::vector<std::string> seen = fPorts[group];
        for (const Route& route : fRoutes) {
            if (route.group == group && fAddresses.contains(route.unit))
                seen.at(static_cast<std::size_t>(route.port)) +=
                    " -> " + std::to_string(fAddresses[route.unit]);
        }
        return seen;
    }

    std::size_t fRoom = 8;
    int fOpenings = 0;
    Address fHeld;
    std::map<SInt32, std::string> fNames;
    std::map<SInt32, std::vector<std::string>> fPorts;
    std::map<MIDIUniqueID, int> fAddresses;
    std::vector<Route> fRoutes;
};

Unit UnitAt(MIDIUniqueID id, const std::string& name, int client) {
    const Address address{client, 0};
    return {id, name, address, address};
}

struct PortKeeperTest : testing::Test {
    FakeSequencer fSequencer;
    PortKeeper fKeeper{fSequencer};
    const Unit fLeft = UnitAt(1, "Left", 16);
    const Unit fMain = UnitAt(2, "Main", 20);
};

TEST_F(PortKeeperTest, PortsStayOpenWhateverUnitsComeGoAndChangePlaces) {
    EXPECT_THAT(fKeeper.Keep({{0, {fLeft, fMain}}}), IsEmpty());
    EXPECT_EQ(fSequencer.fNames[0], "Surfaces 0");
    EXPECT_THAT(fSequencer.Seen(0), ElementsAre("1 Left -> 16", "2 Main -> 20"));
    const int openings = fSequencer.fOpenings;
    fKeeper.Keep({{0, {{1, "Left", {}, {}}, fMain}}});
    EXPECT_THAT(fSequencer.Seen(0), ElementsAre("1 Left", "2 Main -> 20"));
    fKeeper.Keep({{0, {fMain, UnitAt(1, "Left", 24)}}});
    EXPECT_THAT(fSequencer.Seen(0), ElementsAre("1 Main -> 20", "2 Left -> 24"));
    EXPECT_EQ(fSequencer.fOpenings, openings);
}

TEST_F(PortKeeperTest, WhatIsHeldOrHasNoRoomIsNamedAndTakenLater) {
    fSequencer.fRoom = 1;
    fSequencer.fHeld = {16, 0};
    EXPECT_THAT(fKeeper.Keep({{0, {UnitAt(1, "\x1b\u202eLeft", 16)}}, {1, {fMain}}}),
                ElementsAre(StartsWith("The sequencer has no room"),
                            StartsWith("\\x1b\\u{202e}Left is held by another program")));
    EXPECT_TRUE(fKeeper.IsWaiting());
    fSequencer.fRoom = 2;
    fSequencer.fHeld = {};
    EXPECT_THAT(fKeeper.Keep({{0, {fLeft}}, {1, {fMain}}}), IsEmpty());
    EXPECT_FALSE(fKeeper.IsWaiting());
    EXPECT_THAT(fSequencer.Seen(0), ElementsAre("1 Left -> 16"));
    EXPECT_THAT(fSequencer.Seen(1), ElementsAre("1 Main -> 20"));
}

} // namespace
