#include "Platform/CoreMIDI/Live/EndpointNames.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>

namespace KestrinMIDI {

namespace {

constexpr std::size_t kKernelNameBytes = 31;
constexpr std::string_view kBlanks = " \t";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsControl(UChar32 character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

void AppendCharacter(std::string& text, UChar32 character) {
    char bytes[U8_MAX_LENGTH];
    int length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    text.append(bytes, length);
}

/// Whether the bytes are the beginning of a character whose end is missing.
bool IsCutOff(std::string_view tail) {
    const auto lead = static_cast<std::uint8_t>(tail.front());
    return U8_IS_LEAD(lead) && tail.size() < 1u + U8_COUNT_TRAIL_BYTES(lead) &&
           std::all_of(tail.begin() + 1, tail.end(), [](char byte) { return U8_IS_TRAIL(byte); });
}

/// "MIDI", a blank and digits: what the kernel puts behind the unit's name.
bool IsKernelSuffix(std::string_view rest) {
    constexpr std::string_view kMidi = "MIDI ";
    return rest.starts_with(kMidi) && rest.size() > kMidi.size() &&
           rest.find_first_not_of("0123456789", kMidi.size()) == std::string_view::npos;
}

bool IsCutKernelSuffix(std::string_view rest, std::string_view portName) {
    return portName.size() >= kKernelNameBytes && std::string_view("MIDI ").starts_with(rest);
}

std::string_view WithoutPrefix(std::string_view text, std::string_view prefix) {
    return !prefix.empty() && text.starts_with(prefix) ? Trimmed(text.substr(prefix.size())) : text;
}

} // namespace

std::string CleanName(std::string_view bytes) {
    std::string clean;
    const auto length = static_cast<std::int32_t>(bytes.size());
    for (std::int32_t place = 0; place < length;) {
        const std::int32_t start = place;
        UChar32 character;
        U8_NEXT(bytes.data(), place, length, character);
        if (character < 0 && IsCutOff(bytes.substr(start)))
            break;
        if (character < 0)
            character = 0xFFFD;
        AppendCharacter(clean, IsControl(character) ? ' ' : character);
    }
    return std::string(Trimmed(clean));
}

std::string JackName(std::string_view unitName, std::string_view portName) {
    const std::string_view unit = Trimmed(unitName);
    const std::string_view rest = WithoutPrefix(Trimmed(portName), unit);
    if (rest.empty() || IsKernelSuffix(rest) || IsCutKernelSuffix(rest, portName))
        return {};
    // A jack whose own string repeats the unit's name: newer kernels leave the repetition out.
    return CleanName(WithoutPrefix(rest, unit));
}

std::string PortName(int place, const std::string& jackName) {
    const std::string name = "Port " + std::to_string(place);
    return jackName.empty() ? name : name + " (" + jackName + ")";
}

std::string ProgramEndpointName(const std::string& clientName, const std::string& portName) {
    if (clientName.empty() || portName.find(clientName) != std::string::npos)
        return portName;
    return portName.empty() ? clientName : clientName + " " + portName;
}

std::string DistinctName(const std::string& name,
                         const std::function<bool(const std::string&)>& isTaken) {
    std::string distinct = name;
    for (int number = 2; isTaken(distinct); ++number)
        distinct = name + " " + std::to_string(number);
    return distinct;
}

bool IsDistinctNameOf(std::string_view name, std::string_view wanted) {
    if (!name.starts_with(wanted))
        return false;
    const std::string_view rest = name.substr(wanted.size());
    return rest.empty() || (rest.size() > 1 && rest.front() == ' ' &&
                            rest.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

} // namespace KestrinMIDI
