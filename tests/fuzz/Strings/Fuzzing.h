#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the process, which the fuzzer reports, unless the condition holds.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}

/// The fuzzer's bytes as UTF-16 units, in memory that ends with them.
inline std::vector<unsigned short> AsUnits(const std::uint8_t* data, std::size_t size) {
    std::vector<unsigned short> units(size / sizeof(unsigned short));
    if (!units.empty())
        std::memcpy(units.data(), data, units.size() * sizeof(unsigned short));
    return units;
}
