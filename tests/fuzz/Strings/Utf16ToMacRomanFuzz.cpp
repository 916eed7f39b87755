#include "Strings/Transcoders.h"

#include "tests/fuzz/Strings/Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<unsigned short> units = AsUnits(data, size);
    const bool endsInMidPair = !units.empty() && (units.back() & 0xFC00) == 0xD800;
    std::string bytes;
    const std::size_t consumed = utf16_to_MacRoman(units.data(), units.size(), bytes);
    Require(consumed == units.size() - endsInMidPair && bytes.size() <= consumed);
    return 0;
}
