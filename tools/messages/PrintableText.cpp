#include "tools/messages/PrintableText.h"

#include "Surfaces/IsolatedText.h"

#include <wchar.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>

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
    // Controls, marks of direction, of no width or of a line's end, annotations, tags.
    static constexpr std::uint32_t kHidden[][2] = {
        {0, 0x1F},        {0x7F, 0x9F},     {0xAD, 0xAD},     {0x34F, 0x34F},
        {0x61C, 0x61C},   {0x180E, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E},
        {0x2060, 0x206F}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
    return std::none_of(std::begin(kHidden), std::end(kHidden),
                        [code](const auto& range) { return code >= range[0] && code <= range[1]; });
}

std::string Escape(const char* format, std::uint32_t code) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, format, static_cast<unsigned>(code));
    return buffer;
}

/// The text with `escape` in the place of each character that is not visible.
template <typename EscapeOf>
std::string WithEscapes(std::string_view text, EscapeOf escape) {
    std::string shown;
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        const std::size_t bytes = character.bytes == 0 ? 1 : character.bytes;
        if (character.bytes == 0)
            shown += Escape("\\x%02x", static_cast<unsigned char>(text.front()));
        else if (IsVisible(character.code))
            shown += text.substr(0, bytes);
        else
            shown += escape(character.code);
        text.remove_prefix(bytes);
    }
    return shown;
}

} // namespace

std::string Escaped(std::string_view text) {
    return WithEscapes(
        text, [](std::uint32_t code) { return Escape(code < 0x80 ? "\\x%02x" : "\\u{%x}", code); });
}

std::string Printable(std::string_view text) {
    return Isolated(Escaped(text));
}

std::string EscapedJson(std::string_view json) {
    return WithEscapes(json, [](std::uint32_t code) {
        if (code < 0x80)
            return std::string(1, static_cast<char>(code)); // the line feeds between members
        if (code < 0x10000)
            return Escape("\\u%04x", code);
        return Escape("\\u%04x", 0xD7C0 + (code >> 10U)) +
               Escape("\\u%04x", 0xDC00 + (code & 0x3FFU));
    });
}

std::size_t Columns(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        columns +=
            static_cast<std::size_t>(std::max(wcwidth(static_cast<wchar_t>(character.code)), 0));
        text.remove_prefix(std::max<std::size_t>(character.bytes, 1));
    }
    return columns;
}
