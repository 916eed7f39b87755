#pragma once

#include <CoreFoundation/CFString.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace KestrinMIDI {

using CFStringUnits = std::vector<UniChar>;

/// The UTF-16 units of bytes in the encoding; nothing when they are ill-formed in it.
std::optional<CFStringUnits> UnitsOfBytes(std::span<const UInt8> bytes, CFStringEncoding encoding);

/// Takes bytes as long as they fit. Without a buffer it counts them and everything fits.
class ByteSink {
public:
    ByteSink(UInt8* buffer, std::size_t capacity)
        : fBuffer(buffer)
        , fCapacity(capacity) {}

    /// Takes all of the bytes, or none and answers false.
    bool Take(std::span<const UInt8> bytes);
    std::size_t Used() const { return fUsed; }

private:
    UInt8* fBuffer;
    std::size_t fCapacity;
    std::size_t fUsed = 0;
};

/// Writes whole characters into the sink until it is full or, with a `lossByte` of 0, until one
/// cannot be expressed. Answers the number of units converted.
std::size_t WriteUnitsAsBytes(std::span<const UniChar> units, CFStringEncoding encoding,
                              UInt8 lossByte, ByteSink& sink);

} // namespace KestrinMIDI
