#include "tools/midisetup/Output.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace MidiSetup {

namespace {

struct Character {
    std::uint32_t code = 0;
    std::size_t bytes = 0; // 0: not UTF-8
};

std::size_t LengthByFirstByte(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first < 0xC2 || first > 0xF4)
        return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

Character FirstCharacter(std::string_view text) {
    static constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    static constexpr unsigned char kFirstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t bytes = LengthByFirstByte(first);
    if (bytes == 0 || bytes > text.size())
        return {};
    std::uint32_t code = first & kFirstBits[bytes];
    for (std::size_t i = 1; i < bytes; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80U)
            return {};
        code = code << 6U | (next & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallest[bytes] || code > 0x10FFFF || isSurrogate)
        return {};
    return {code, bytes};
}

bool IsVisible(std::uint32_t code) {
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool turnsDirection = code == 0x61C || code == 0x200E || code == 0x200F ||
                                (code >= 0x202A && code <= 0x202E) ||
                                (code >= 0x2066 && code <= 0x2069);
    const bool breaksLine = code == 0x2028 || code == 0x2029;
    return !isControl && !turnsDirection && !breaksLine;
}

std::string Escape(const char* format, std::uint32_t code) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, format, static_cast<unsigned>(code));
    return buffer;
}

bool MayShowColour() {
    const char* refusal = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && (refusal == nullptr || *refusal == '\0') &&
           terminal != nullptr && std::string_view(terminal) != "dumb";
}

std::string Styled(const char* style, const std::string& text) {
    static const bool mayShowColour = MayShowColour();
    return mayShowColour ? style + text + "\033[0m" : text;
}

} // namespace

std::string Printable(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        const std::size_t bytes = character.bytes == 0 ? 1 : character.bytes;
        if (character.bytes == 0)
            shown += Escape("\\x%02x", static_cast<unsigned char>(text.front()));
        else if (IsVisible(character.code))
            shown += text.substr(0, bytes);
        else
            shown += Escape(character.code < 0x80 ? "\\x%02x" : "\\u{%x}", character.code);
        text.remove_prefix(bytes);
    }
    return shown;
}

std::string Strong(const std::string& text) {
    return Styled("\033[1m", text);
}

std::string Faint(const std::string& text) {
    return Styled("\033[2m", text);
}

} // namespace MidiSetup
