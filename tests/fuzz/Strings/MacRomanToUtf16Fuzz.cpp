#include "Strings/Transcoders.h"

#include "tests/fuzz/Strings/Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    UTF16String units;
    Require(MacRoman_to_utf16(data, size, units) == size && units.size() == size);
    std::string back;
    Require(utf16_to_MacRoman(units.data(), units.size(), back) == size);
    Require(size == 0 || std::memcmp(back.data(), data, size) == 0);
    return 0;
}
