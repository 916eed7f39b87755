#include "Strings/Transcoders.h"
#include "Strings/Utf16Reader.h"

std::size_t utf16_to_utf32(const unsigned short* source, std::size_t count, UTF32String& out) {
    out.clear();
    out.reserve(count);
    Utf16Reader reader(source, count);
    for (unsigned int value = 0; reader.Next(value);)
        out.push_back(value);
    return reader.Consumed();
}
