#include "Strings/Transcoders.h"

#include "tests/Strings/PlainTranscoders.h"
#include "tests/fuzz/Strings/Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<unsigned short> units = AsUnits(data, size);
    std::string bytes;
    const std::size_t consumed = utf16_to_utf8(units.data(), units.size(), bytes);
    const Plain::Utf8Result expected = Plain::Utf16ToUtf8(units.data(), units.size());
    Require(consumed == expected.consumed && bytes == expected.bytes);
    return 0;
}
