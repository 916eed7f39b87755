#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <ios>
#include <string>
#include <string_view>

/// Character traits of unsigned code units: ordered as unsigned numbers, ended by a 0 unit.
/// Complete for std::basic_string and the streams; used for `unsigned short` (UTF-16) and `unsigned
/// int` (UTF-32).
template <typename Unit>
struct UTraits {
    using char_type = Unit;
    using int_type = unsigned long long;
    using off_type = std::streamoff;
    using pos_type = std::fpos<std::mbstate_t>;
    using state_type = std::mbstate_t;
    using comparison_category = std::strong_ordering;

    static constexpr void assign(Unit& to, const Unit& from) noexcept { to = from; }
    static constexpr bool eq(Unit a, Unit b) noexcept { return a == b; }
    static constexpr bool lt(Unit a, Unit b) noexcept { return a < b; }

    /// Below, at or above 0 as `a` sorts before, with or after `b`.
    static int compare(const Unit* a, const Unit* b, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            if (a[i] != b[i])
                return a[i] < b[i] ? -1 : 1;
        }
        return 0;
    }

    static std::size_t length(const Unit* units) {
        std::size_t count = 0;
        while (units[count] != 0)
            ++count;
        return count;
    }

    static const Unit* find(const Unit* units, std::size_t count, const Unit& wanted) {
        for (std::size_t i = 0; i < count; ++i) {
            if (units[i] == wanted)
                return units + i;
        }
        return nullptr;
    }

    static Unit* move(Unit* to, const Unit* from, std::size_t count) {
        if (count > 0)
            std::memmove(to, from, count * sizeof(Unit));
        return to;
    }

    static Unit* copy(Unit* to, const Unit* from, std::size_t count) {
        if (count > 0)
            std::memcpy(to, from, count * sizeof(Unit));
        return to;
    }

    static Unit* assign(Unit* to, std::size_t count, Unit unit) {
        if (unit == 0 && count > 0)
            std::memset(to, 0, count * sizeof(Unit));
        else
            std::fill_n(to, count, unit);
        return to;
    }

    static constexpr Unit to_char_type(int_type value) noexcept { return static_cast<Unit>(value); }
    static constexpr int_type to_int_type(Unit unit) noexcept { return unit; }
    static constexpr bool eq_int_type(int_type a, int_type b) noexcept { return a == b; }
    static constexpr int_type eof() noexcept { return ~int_type{0}; }
    static constexpr int_type not_eof(int_type value) noexcept {
        return value == eof() ? 0 : value;
    }
};

/// Text in UTF-16 code units and in UTF-32 values.
using UTF16String = std::basic_string<unsigned short, UTraits<unsigned short>>;
using UTF32String = std::basic_string<unsigned int, UTraits<unsigned int>>;
