#include "Platform/CoreMIDI/Live/EndpointNames.h"

#include <gtest/gtest.h>

using namespace KestrinMIDI;

namespace {

TEST(EndpointNames, AreCleanedToReadableUtf8) {
    EXPECT_EQ(CleanName("  MCU Trailing   "), "MCU Trailing");
    EXPECT_EQ(CleanName("a\xc3\x9f\xc3\x9f\xc3"), "aßß"); // cut inside a character
    EXPECT_EQ(CleanName("\xe2\x80"), "");                 // nothing but the cut
    EXPECT_EQ(CleanName("a\xff!\xc3?"), "a\uFFFD!\uFFFD?");
    EXPECT_EQ(CleanName("\ttab\there\x01\x7f\xc2\x85!\n"), "tab here   !");
    EXPECT_EQ(CleanName(std::string_view("a\0b", 3)), "a b");
}

TEST(EndpointNames, TellAJacksOwnNameFromTheKernelsText) {
    const struct {
        const char* unit;
        const char* port;
        const char* jack;
    } cases[] = {
        {"MCU Pro USB", "MCU Pro USB MIDI 1", ""},
        {"MCU Pro USB v3.1", "MCU Pro USB v3.1 Main", "Main"},
        {"XT Demo", "XT Demo XT Demo Main", "Main"}, // kernels before the repetition was left out
        {"MCU Pro USB v3.1", "MCU Pro USB v3.1 ", ""},
        {"A Very Long Product Name That G", "A Very Long Product Name That G", ""},
        {"Twenty-Seven Chars Surface", "Twenty-Seven Chars Surface MIDI", ""},
        {"  MCU Trailing", "  MCU Trailing MIDI 1", ""},
        {"aß", "aß ßßß\xc3", "ßßß"},
        {"Fastlane", "Fastlane MIDI A", "MIDI A"},
        {"Unit", "MIDI", "MIDI"}, // short, so nothing was cut off: the jack says so
    };
    for (const auto& known : cases)
        EXPECT_EQ(JackName(known.unit, known.port), known.jack) << known.port;
}

} // namespace
