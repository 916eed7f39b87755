#pragma once

#include <cstdint>

namespace Kestrin {

/// A command as a menu and an item in it. One to one with a 32-bit code, which is what native menu
/// items carry: the menu in the high half, the item's bit pattern in the low half.
struct CommandSpecifier {
    /// 0 for commands that carry a whole command number in `menuItem`.
    std::uint16_t menuID = 0;
    /// Counted from 1 in its menu.
    std::int16_t menuItem = 0;

    static constexpr CommandSpecifier FromCode(std::uint32_t code) {
        return {static_cast<std::uint16_t>(code >> 16), static_cast<std::int16_t>(code)};
    }

    constexpr std::uint32_t Code() const {
        return std::uint32_t{menuID} << 16 | static_cast<std::uint16_t>(menuItem);
    }

    friend constexpr bool operator==(const CommandSpecifier&, const CommandSpecifier&) = default;
};

} // namespace Kestrin
