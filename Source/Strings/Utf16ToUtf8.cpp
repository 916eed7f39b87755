#include "Strings/ChunkedTranscoding.h"
#include "Strings/Transcoders.h"
#include "Strings/Utf16Reader.h"
#include "Strings/Utf8Blocks.h"

#include <algorithm>

namespace {

constexpr std::size_t kLongestSequence = 4;
constexpr unsigned char kFirstByteMarks[kLongestSequence + 1] = {0x00, 0x00, 0xC0, 0xE0, 0xF0};

// So many units are encoded at a time, into bytes that fit into the nearest cache.
constexpr std::size_t kChunk = 4096;
constexpr std::size_t kMostBytesPerUnit = 3;

// No pair of surrogates stands for a value that needs more than four bytes.
std::size_t SequenceLength(unsigned int value) {
    return value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
}

/// Writes the bytes of a value and answers how many they are.
std::size_t WriteSequence(unsigned int value, char* bytes) {
    const std::size_t length = SequenceLength(value);
    for (std::size_t i = length - 1; i > 0; --i) {
        bytes[i] = static_cast<char>(0x80 | (value & 0x3F));
        value >>= 6;
    }
    bytes[0] = static_cast<char>(kFirstByteMarks[length] | value);
    return length;
}

/// Encodes one character after the other up to a surrogate without its partner or the first
/// character that starts at `limit` or behind it.
Stretch EncodePlainly(const unsigned short* source, std::size_t count, std::size_t limit,
                      char* bytes) {
    Utf16Reader reader(source, count);
    std::size_t written = 0;
    for (unsigned int value = 0; reader.Consumed() < limit && reader.Next(value);)
        written += WriteSequence(value, bytes + written);
    return {reader.Consumed(), written};
}

/// Encodes a chunk, or the text up to its first surrogate without a partner.
Stretch EncodeChunk(const unsigned short* source, std::size_t count, char* bytes) {
    const std::size_t limit = std::min(count, kChunk);
    Stretch done;
    while (done.consumed < limit) {
        done += EncodeUtf8Blocks(source + done.consumed, count - done.consumed,
                                 limit - done.consumed, bytes + done.written);
        if (done.consumed >= limit)
            break;
        const std::size_t rest = count - done.consumed;
        const Stretch plain = EncodePlainly(source + done.consumed, rest, std::min(rest, kBlock),
                                            bytes + done.written);
        if (plain.consumed == 0)
            break;
        done += plain;
    }
    return done;
}

} // namespace

std::size_t utf16_to_utf8(const unsigned short* source, std::size_t count, std::string& out) {
    return TranscodeInChunks<kChunk, kMostBytesPerUnit*(kChunk + 2 * kBlock)>(
        source, count, 2 * count, EncodeChunk, out);
}
