// Both Mac Roman functions from eight threads; ThreadSanitizer ends the program on a race, the
// check on a wrong result.

#include "Strings/Transcoders.h"

#include <cstdlib>
#include <numeric>
#include <thread>
#include <vector>

namespace {

void ConvertThereAndBack() {
    std::string bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    for (int round = 0; round < 500; ++round) {
        UTF16String units;
        std::string back;
        MacRoman_to_utf16(reinterpret_cast<const unsigned char*>(bytes.data()), 256, units);
        utf16_to_MacRoman(units.data(), units.size(), back);
        if (back != bytes)
            std::abort();
    }
}

} // namespace

int main() {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back(ConvertThereAndBack);
}
