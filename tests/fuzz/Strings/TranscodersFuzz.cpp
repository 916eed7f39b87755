#include "Strings/Transcoders.h"

#include "tests/Source/Strings/PlainTranscoders.h"
#include "tests/fuzz/Require.h"

#include <cstdint>
#include <cstring>
#include <vector>

// One fuzz target for each direction: FUZZED names the check below that the target makes of its
// input. The fast transcoders answer as the plain ones do, and Mac Roman comes back as it was.

namespace {

constexpr char kAsPlain[] = "the fast transcoder answers as the plain one";

[[maybe_unused]] void Utf8ToUtf16(const std::uint8_t* data, std::size_t size) {
    Require(Plain::ResultOf(utf8_to_utf16, data, size) == Plain::Utf8ToUtf16(data, size), kAsPlain);
}

[[maybe_unused]] void MacRomanToUtf16(const std::uint8_t* data, std::size_t size) {
    const auto units = Plain::ResultOf(MacRoman_to_utf16, data, size);
    Require(units.consumed == size && units.text.size() == size, "a unit for each byte");
    const Plain::Result<std::string> same{{data, data + size}, size};
    Require(Plain::ResultOf(utf16_to_MacRoman, units.text.data(), size) == same, "it comes back");
}

std::vector<unsigned short> UnitsOf(const std::uint8_t* data, std::size_t size) {
    std::vector<unsigned short> units(size / sizeof(unsigned short));
    if (!units.empty())
        std::memcpy(units.data(), data, units.size() * sizeof(unsigned short));
    return units;
}

[[maybe_unused]] void Utf16ToUtf8(const std::uint8_t* data, std::size_t size) {
    const auto units = UnitsOf(data, size);
    const unsigned short* const source = units.data();
    Require(Plain::ResultOf(utf16_to_utf8, source, units.size()) ==
                Plain::Utf16ToUtf8(source, units.size()),
            kAsPlain);
}

[[maybe_unused]] void Utf16ToUtf32(const std::uint8_t* data, std::size_t size) {
    const auto units = UnitsOf(data, size);
    const unsigned short* const source = units.data();
    Require(Plain::ResultOf(utf16_to_utf32, source, units.size()) ==
                Plain::Utf16ToUtf32(source, units.size()),
            kAsPlain);
}

[[maybe_unused]] void Utf16ToMacRoman(const std::uint8_t* data, std::size_t size) {
    const auto units = UnitsOf(data, size);
    const bool endsInMidPair = !units.empty() && (units.back() & 0xFC00) == 0xD800;
    std::string bytes;
    Require(utf16_to_MacRoman(units.data(), units.size(), bytes) == units.size() - endsInMidPair,
            "only half a pair stays");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FUZZED(data, size);
    return 0;
}
