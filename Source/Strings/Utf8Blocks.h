#pragma once

#include <cstddef>

/// How far a stretch of transcoding came, in elements of its input and of its output.
struct Stretch {
    std::size_t consumed = 0;
    std::size_t written = 0;

    Stretch& operator+=(const Stretch& next) {
        consumed += next.consumed;
        written += next.written;
        return *this;
    }
};

/// The elements of a block. It may write that many more behind what it counts as written.
constexpr std::size_t kBlock = 32;

// Transcoding in blocks, with vector instructions where the machine has them; where it has none
// they take ASCII only, eight bytes at a time. They begin at the boundary of a character, start no
// block at `limit` or behind it, and end at the boundary of a character: at the first block that
// needs the plain transcoder, at `limit`, or less than two blocks behind it.

/// Decodes blocks that are well-formed and free of four-byte sequences. `units` has room for
/// `limit` + 2 * kBlock units.
Stretch DecodeUtf8Blocks(const unsigned char* source, std::size_t count, std::size_t limit,
                         unsigned short* units);

/// Encodes blocks that are free of the system's surrogates. `bytes` has room for
/// 3 * (`limit` + 2 * kBlock) bytes.
Stretch EncodeUtf8Blocks(const unsigned short* source, std::size_t count, std::size_t limit,
                         char* bytes);
