// Both Mac Roman functions from eight threads; ThreadSanitizer ends the program on a race, the
// checks on a wrong result.

#include "Strings/Transcoders.h"

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

void Check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "Wrong result: %s\n", what);
        std::abort();
    }
}

void ConvertThereAndBack() {
    std::string bytes(256, '\0');
    for (int value = 0; value < 256; ++value)
        bytes[static_cast<std::size_t>(value)] = static_cast<char>(value);
    for (int round = 0; round < 500; ++round) {
        UTF16String units;
        const auto* source = reinterpret_cast<const unsigned char*>(bytes.data());
        Check(MacRoman_to_utf16(source, bytes.size(), units) == bytes.size(), "bytes read");
        std::string back;
        Check(utf16_to_MacRoman(units.data(), units.size(), back) == units.size(), "units read");
        Check(back == bytes, "the bytes that come back");
    }
}

} // namespace

int main() {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back(ConvertThereAndBack);
    for (std::thread& thread : threads)
        thread.join();
}
