#include "tools/surface-ports/SurfacePlan.h"

#include "tests/Platform/CoreMIDI/MidiTest.h"

namespace {

using namespace SurfacePorts;
using testing::ElementsAre;

/// "0: Left 16:0, Main; " for each group, with the sequencer port of a unit that is there.
std::string Told(const std::optional<Plan>& plan) {
    std::string told;
    for (const Group& group : plan.value()) {
        told += std::to_string(group.number) + ":";
        for (const Unit& unit : group.units) {
            told += " " + unit.name;
            if (unit.from && unit.from == unit.to)
                told +=
                    " " + std::to_string(unit.from->client) + ":" + std::to_string(unit.from->port);
        }
        told += "; ";
    }
    return told;
}

class SurfacePlanTest : public MidiTest {
protected:
    static void Settle(MIDIObjectRef device, SInt32 group, SInt32 position) {
        SetNumber(device, "com_velt_sorvex_control_surface_groupid", group);
        SetNumber(device, "com_velt_sorvex_control_surface_grouppos", position);
    }
};

TEST_F(SurfacePlanTest, OrdersUnitsWithAPlacePluggedOrNot) {
    const UnitFacts one{.serial = "1", .ports = {"MCU Pro USB MIDI 1", "MCU Pro USB MIDI 2"}};
    PlugIn(SequencerWith({one, {1, "2"}, {2, "3"}}));
    ASSERT_EQ(MIDIGetNumberOfDevices(), 3u);
    const MIDIDeviceRef external = AddExternal("Right", "Mackie", "Mackie Control Exp");
    Cable(MIDIGetDevice(0), 2, external);
    SetText(MIDIGetDevice(1), "name", "Left");
    Settle(MIDIGetDevice(0), 4, 7);
    Settle(MIDIGetDevice(1), 4, 2);
    Settle(MIDIGetDevice(2), 0, ID(MIDIGetDevice(2))); // a default, nobody's choice
    Settle(external, 4, 8);
    EXPECT_EQ(Told(ReadPlan()), "4: Left 20:0 MCU Pro USB 16:0 Right 16:1; ");

    Settle(external, 0, 0);
    PlugIn(SequencerWith({{5, "2"}}));
    ASSERT_EQ(MIDIGetNumberOfSources(), 1u);
    EXPECT_EQ(Told(ReadPlan()), "0: Right; 4: Left 36:0 MCU Pro USB; ");
}

} // namespace
