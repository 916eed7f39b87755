#include "Strings/Transcoders.h"
#include "Strings/Utf16Reader.h"

namespace {

constexpr std::size_t kLongestSequence = 4;
constexpr unsigned char kFirstByteMarks[kLongestSequence + 1] = {0x00, 0x00, 0xC0, 0xE0, 0xF0};

// No pair of surrogates stands for a value that needs more than four bytes.
std::size_t SequenceLength(unsigned int value) {
    return value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
}

void AppendSequence(std::string& out, unsigned int value) {
    char sequence[kLongestSequence];
    const std::size_t length = SequenceLength(value);
    for (std::size_t i = length - 1; i > 0; --i) {
        sequence[i] = static_cast<char>(0x80 | (value & 0x3F));
        value >>= 6;
    }
    sequence[0] = static_cast<char>(kFirstByteMarks[length] | value);
    out.append(sequence, length);
}

} // namespace

std::size_t utf16_to_utf8(const unsigned short* source, std::size_t count, std::string& out) {
    out.clear();
    out.reserve(2 * count);
    Utf16Reader reader(source, count);
    for (unsigned int value = 0; reader.Next(value);)
        AppendSequence(out, value);
    return reader.Consumed();
}
