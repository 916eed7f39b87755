#include "Strings/Transcoders.h"

#include "tests/Strings/PlainTranscoders.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

// Takes the bytes as UTF-8, as Mac Roman and as UTF-16 units; the fast transcoders answer as the
// plain ones do, and Mac Roman comes back as it was.

namespace {

void Require(bool holds) {
    if (!holds)
        std::abort();
}

void CheckBytes(const std::uint8_t* data, std::size_t size) {
    Plain::Result<UTF16String> units;
    units.consumed = utf8_to_utf16(data, size, units.text);
    Require(units == Plain::Utf8ToUtf16(data, size));

    Require(MacRoman_to_utf16(data, size, units.text) == size && units.text.size() == size);
    std::string back;
    Require(utf16_to_MacRoman(units.text.data(), size, back) == size);
    Require(back == std::string(data, data + size));
}

void CheckUnits(const unsigned short* units, std::size_t size) {
    Plain::Result<std::string> bytes;
    bytes.consumed = utf16_to_utf8(units, size, bytes.text);
    Require(bytes == Plain::Utf16ToUtf8(units, size));
    Plain::Result<UTF32String> values;
    values.consumed = utf16_to_utf32(units, size, values.text);
    Require(values == Plain::Utf16ToUtf32(units, size));

    const bool endsInMidPair = size > 0 && (units[size - 1] & 0xFC00) == 0xD800;
    Require(utf16_to_MacRoman(units, size, bytes.text) == size - endsInMidPair);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckBytes(data, size);
    std::vector<unsigned short> units(size / sizeof(unsigned short));
    if (!units.empty())
        std::memcpy(units.data(), data, units.size() * sizeof(unsigned short));
    CheckUnits(units.data(), units.size());
    return 0;
}
