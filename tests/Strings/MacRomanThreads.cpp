// Both Mac Roman functions from eight threads; ThreadSanitizer ends the program on a race, the
// check on a wrong result.

#include "Strings/Transcoders.h"

#include <cstdlib>
#include <thread>
#include <vector>

namespace {

void ConvertThereAndBack() {
    std::string bytes;
    for (int value = 0; value < 256; ++value)
        bytes += static_cast<char>(value);
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
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back(ConvertThereAndBack);
    for (std::thread& thread : threads)
        thread.join();
}
