#pragma once

#include "Strings/SystemSurrogates.h"

#include <cstddef>
#include <cstring>

/// Reads characters out of UTF-16 units that may stand at any address.
class Utf16Reader {
public:
    Utf16Reader(const unsigned short* units, std::size_t count)
        : fUnits(units)
        , fCount(count) {}

    /// The number of units read.
    std::size_t Consumed() const { return fConsumed; }

    /// Reads one character. Answers false at the end and before a surrogate without its partner.
    bool Next(unsigned int& value) {
        if (fConsumed == fCount)
            return false;
        value = UnitAt(fConsumed);
        if (SystemSurrogates::IsLow(value))
            return false;
        if (!SystemSurrogates::IsHigh(value)) {
            ++fConsumed;
            return true;
        }
        return CompletePair(value);
    }

private:
    unsigned int UnitAt(std::size_t index) const {
        unsigned short unit;
        std::memcpy(&unit, reinterpret_cast<const char*>(fUnits) + index * sizeof unit,
                    sizeof unit);
        return unit;
    }

    bool CompletePair(unsigned int& value) {
        if (fCount - fConsumed < 2 || !SystemSurrogates::IsLow(UnitAt(fConsumed + 1)))
            return false;
        value = SystemSurrogates::Combine(value, UnitAt(fConsumed + 1));
        fConsumed += 2;
        return true;
    }

    const unsigned short* fUnits;
    std::size_t fCount;
    std::size_t fConsumed = 0;
};
