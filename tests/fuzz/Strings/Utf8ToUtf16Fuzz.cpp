#include "Strings/Transcoders.h"

#include "tests/Strings/PlainTranscoders.h"
#include "tests/fuzz/Strings/Fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    UTF16String units;
    const std::size_t consumed = utf8_to_utf16(data, size, units);
    const Plain::Utf16Result expected = Plain::Utf8ToUtf16(data, size);
    Require(consumed == expected.consumed && units == expected.units);
    return 0;
}
