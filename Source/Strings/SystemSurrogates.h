#pragma once

/// The system's own surrogate scheme; Transcoders.h describes it.
namespace SystemSurrogates {

constexpr unsigned int kFirstPaired = 0x10000;
constexpr unsigned int kPastLast = 0x110000;

constexpr bool IsHigh(unsigned int unit) {
    return unit >> 8 == 0xDB;
}

constexpr bool IsLow(unsigned int unit) {
    return unit >> 8 == 0xDC;
}

constexpr unsigned int Combine(unsigned int high, unsigned int low) {
    return (high << 10) + low - 0x36BDC00;
}

/// The units of a value from kFirstPaired on and below kPastLast.
constexpr unsigned short High(unsigned int value) {
    return static_cast<unsigned short>(0xDB00 + ((value - kFirstPaired) >> 10));
}

constexpr unsigned short Low(unsigned int value) {
    return static_cast<unsigned short>(0xDC00 | (value & 0x3FF));
}

} // namespace SystemSurrogates
