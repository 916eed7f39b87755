#include "Strings/Transcoders.h"

#include "tests/Strings/PlainTranscoders.h"
#include "tests/fuzz/Strings/Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<unsigned short> units = AsUnits(data, size);
    UTF32String values;
    const std::size_t consumed = utf16_to_utf32(units.data(), units.size(), values);
    const Plain::Utf32Result expected = Plain::Utf16ToUtf32(units.data(), units.size());
    Require(consumed == expected.consumed && values == expected.values);
    return 0;
}
