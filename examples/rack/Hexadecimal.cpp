#include "examples/rack/Hexadecimal.h"

#include <charconv>

std::string Hexadecimal(std::span<const std::uint8_t> bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string digits;
    for (const std::uint8_t byte : bytes)
        digits += {kDigits[byte >> 4], kDigits[byte & 0x0F]};
    return digits;
}

MidiBytes FromHexadecimal(const std::string& digits) {
    MidiBytes bytes(digits.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* const pair = digits.data() + 2 * i;
        if (std::from_chars(pair, pair + 2, bytes[i], 16).ptr != pair + 2)
            return {};
    }
    return digits.size() % 2 == 0 ? bytes : MidiBytes();
}
