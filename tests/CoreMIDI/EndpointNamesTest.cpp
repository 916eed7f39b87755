#include "Platform/CoreMIDI/EndpointNames.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace {

TEST(EndpointNames, AreCleanedToReadableUtf8) {
    EXPECT_EQ(CleanName("  MCU Trailing   "), "MCU Trailing");
    EXPECT_EQ(CleanName("a\xc3\x9f\xc3\x9f\xc3"), "aßß"); // cut inside a character
    EXPECT_EQ(CleanName("\xe2\x80"), "");                 // nothing but the cut
    EXPECT_EQ(CleanName("a\xff"
                        "b\xc3"
                        "c"),
              "a\uFFFDb\uFFFDc");
    EXPECT_EQ(CleanName("tab\there\x01\x7f\xc2\x85!"), "tabhere!");
    EXPECT_EQ(CleanName(std::string_view("a\0b", 3)), "ab");
}

TEST(EndpointNames, TellAJacksOwnNameFromTheKernelsText) {
    struct Case {
        const char* unit;
        const char* port;
        const char* jack;
    };
    const std::vector<Case> cases = {
        {"MCU Pro USB", "MCU Pro USB MIDI 1", ""},
        {"MCU Pro USB v3.1", "MCU Pro USB v3.1 Main", "Main"},
        {"XT Demo", "XT Demo XT Demo Main", "Main"}, // kernels before the repetition was left out
        {"XT Demo", "XT Demo Main", "Main"},
        {"MCU Pro USB v3.1", "MCU Pro USB v3.1 ", ""},
        {"A Very Long Product Name That G", "A Very Long Product Name That G", ""},
        {"Twenty-Seven Chars Surface", "Twenty-Seven Chars Surface MIDI", ""},
        {"Mischpult Größe Ω – Fader", "Mischpult Größe Ω – Fader ", ""},
        {"  MCU Trailing", "  MCU Trailing MIDI 1", ""},
        {"Product name 24 chars xx", "Product name 24 chars xx Port O", "Port O"},
        {"aß", "aß ßßß\xc3", "ßßß"},
        {"USB Device 0xa73:0x06", "USB Device 0xa73:0x06 MIDI 16", ""},
        {"Fastlane", "Fastlane MIDI A", "MIDI A"},
        {"Unit", "MIDI", "MIDI"}, // short, so nothing was cut off: the jack says so
    };
    for (const Case& known : cases)
        EXPECT_EQ(JackName(known.unit, known.port), known.jack) << known.port;
}

TEST(EndpointNames, BeginWithThePlace) {
    EXPECT_EQ(PortName(1, ""), "Port 1");
    EXPECT_EQ(PortName(12, "Main"), "Port 12 (Main)");
    EXPECT_EQ(ProgramEndpointName("Mixer", "Clock"), "Mixer Clock");
    EXPECT_EQ(ProgramEndpointName("Mixer", "Mixer out"), "Mixer out");
    EXPECT_EQ(ProgramEndpointName("Mixer", ""), "Mixer");
}

TEST(EndpointNames, AreMadeDistinctByANumber) {
    const std::set<std::string> taken = {"Unit", "Unit 2", "Other"};
    const auto isTaken = [&](const std::string& name) { return taken.contains(name); };
    EXPECT_EQ(DistinctName("Unit", isTaken), "Unit 3");
    EXPECT_EQ(DistinctName("Other", isTaken), "Other 2");
    EXPECT_EQ(DistinctName("New", isTaken), "New");
}

} // namespace
