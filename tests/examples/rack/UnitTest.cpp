#include "examples/rack/Hand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A rack of one unit, what it sent and what it reported.
struct Rack {
    explicit Rack(UnitModel model) {
        units.emplace_back(
            model, 1,
            Unit::Host{[this](const MidiBytes& message) { sent.push_back(message); },
                       [this](const std::string& line) { reported.push_back(line); }});
    }
    void Take(const MidiBytes& bytes) { units[0].Take(bytes); }
    std::vector<MidiBytes> Sent() { return std::exchange(sent, {}); }
    std::vector<std::string> Reported() { return std::exchange(reported, {}); }
    std::string Do(const std::string& line) { return DoByHand(units, line); }

    std::vector<Unit> units;
    std::vector<MidiBytes> sent;
    std::vector<std::string> reported;
};

TEST(RackUnit, ShakesHandsOnlyWithAHostThatNamesItsSerialNumber) {
    Rack rack(UnitModel::Extender);
    rack.Take({0xF0, 0x00, 0x00, 0x66, 0x14, 0x00, 0xF7}); // the main unit is meant
    EXPECT_THAT(rack.Sent(), IsEmpty());
    rack.Take({0xF0, 0x00, 0x00, 0x66, 0x15, 0x00, 0xF7});
    MidiBytes query = rack.Sent().at(0);
    ASSERT_EQ(query.size(), 18u);
    EXPECT_EQ(query[5], 0x01);

    query[5] = 0x02; // the host's reply: the same serial number and four bytes of response
    rack.Take(query);
    query[6] ^= 1;
    rack.Take(query);
    const std::vector<MidiBytes> answers = rack.Sent();
    EXPECT_EQ(answers.at(0)[5], 0x03);
    EXPECT_EQ(answers.at(1)[5], 0x04);

    rack.Take({0xF0, 0x00, 0x00, 0x66, 0x15, 0x13, 0x00, 0xF7});
    EXPECT_THAT(rack.Sent(), ElementsAre(MidiBytes{0xF0, 0x00, 0x00, 0x66, 0x15, 0x14, 'V', '4',
                                                   '.', '0', '2', 0xF7}));
}

TEST(RackUnit, FollowsAHostWhoseMessagesComeInPiecesAndEchoesNothing) {
    Rack rack(UnitModel::Main);
    rack.Take({0xE2, 0x01});
    rack.Take({0xF8, 0x40, 0x02, 0x41}); // a clock inside, then running status
    rack.Take({0xE9, 0x00, 0x00});       // there is no such fader
    rack.Take({0xF0, 0x00, 0x00, 0x66, 0x14, 0x12, 0x38, 'H'});
    rack.Take({'i', 0xF7, 0x90, 0x5E, 0x7F, 0xD0, 0x1C});
    EXPECT_THAT(rack.Reported(),
                ElementsAre("heard F8", "fader 3 8193", "fader 3 8322", testing::HasSubstr("\"Hi "),
                            "lamp 5E on", "heard D01C"));
    EXPECT_EQ(rack.units[0].DisplayLine(1).substr(0, 3), "Hi ");
    EXPECT_THAT(rack.Sent(), IsEmpty());
}

TEST(RackUnit, DoesWhatAHandDoesAndSaysWhatALineLacks) {
    Rack rack(UnitModel::Main);
    EXPECT_EQ(rack.Do("1 move 9 16383"), "");
    EXPECT_THAT(rack.Sent(), ElementsAre(MidiBytes{0x90, 0x70, 0x7F}, MidiBytes{0xE8, 0x7F, 0x7F},
                                         MidiBytes{0x90, 0x70, 0x00}));
    for (const char* line :
         {"", "2 show", "1 dance", "1 touch 0", "1 touch 10", "1 move 1 16384", "1 move 1",
          "1 press 80", "1 press zz", "1 send", "1 send B07", "1 send B0x7"})
        EXPECT_NE(rack.Do(line), "") << line;
    EXPECT_THAT(rack.Sent(), IsEmpty());
    EXPECT_THAT(rack.Do("1 show"), testing::HasSubstr("faders 0 0 0 0 0 0 0 0 16383"));
}

} // namespace
