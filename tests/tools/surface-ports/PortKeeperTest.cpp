#include "tools/surface-ports/PortKeeper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace SurfacePorts;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// A sequencer as mixers see it: what is open. Where events go, the fuzz target Ports shows.
class FakeSequencer final : public Sequencer {
public:
    bool OpenGroup(SInt32 group, const std::string& name) override {
        return fNames.size() < fRoom && fNames.emplace(group, name).second;
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
    void ClosePort(SInt32 group, int) override { fPorts[group].pop_back(); }
    LinkState Link(MIDIUniqueID, Direction, const Address& address) override {
        return address == fHeld ? LinkState::Held : LinkState::Linked;
    }
    void Unlink(MIDIUniqueID, Direction) override {}
    void Forget(MIDIUniqueID) override {}
    void SetRoutes(const std::vector<Route>&) override {}

    std::size_t fRoom = 8;
    int fOpenings = 0;
    Address fHeld;
    std::map<SInt32, std::string> fNames;
    std::map<SInt32, std::vector<std::string>> fPorts;
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
    fKeeper.Keep({{0, {{1, "Left", {}, {}}, fMain}}});
    EXPECT_THAT(fSequencer.fPorts[0], ElementsAre("1 Left", "2 Main"));
    fKeeper.Keep({{0, {fMain, UnitAt(1, "Left", 24)}}});
    EXPECT_THAT(fSequencer.fPorts[0], ElementsAre("1 Main", "2 Left"));
    EXPECT_EQ(fSequencer.fOpenings, 2);
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
    EXPECT_THAT(fSequencer.fPorts[1], ElementsAre("1 Main"));
}

} // namespace
