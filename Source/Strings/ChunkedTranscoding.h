#pragma once

#include "Strings/Utf8Blocks.h"

#include <algorithm>
#include <cstddef>

/// Transcodes the beginning of a text of `count` elements, about a chunk of it, into memory. Comes
/// no further than its start when an ill-formed element stands there; may end early before one.
template <typename From, typename To>
using ChunkTranscoder = Stretch (*)(const From* source, std::size_t count, To* out);

/// What all of `count` elements come to, if the rest is like their first chunk.
inline std::size_t ExpectedSize(std::size_t count, const Stretch& chunk) {
    return (count / chunk.consumed + 1) * chunk.written;
}

/// A text of at most one chunk: put together beside `out`, which then takes no more room than it
/// needs.
template <std::size_t kRoom, typename From, typename String>
std::size_t TranscodeShort(const From* source, std::size_t count, std::size_t capacity,
                           ChunkTranscoder<From, typename String::value_type> transcode,
                           String& out) {
    typename String::value_type room[kRoom];
    const Stretch done = transcode(source, count, room);
    out.clear();
    out.reserve(std::max(capacity, done.written));
    out.append(room, done.written);
    return done.consumed;
}

/// A text of many chunks: written straight into `out`. Old content is room that need not be filled
/// with zeros first, and new room is filled just before it is written, when it is in the nearest
/// cache.
template <std::size_t kRoom, typename From, typename String>
std::size_t TranscodeLong(const From* source, std::size_t count, std::size_t capacity,
                          ChunkTranscoder<From, typename String::value_type> transcode,
                          String& out) {
    Stretch done;
    while (done.consumed < count) {
        out.resize(std::max(out.size(), done.written + kRoom));
        const Stretch chunk =
            transcode(source + done.consumed, count - done.consumed, out.data() + done.written);
        if (chunk.consumed == 0)
            break;
        if (done.consumed == 0)
            out.reserve(std::max(capacity, ExpectedSize(count, chunk) + kRoom));
        done += chunk;
    }
    out.resize(done.written);
    return done.consumed;
}

/// Replaces `out` by the transcoded text up to its first ill-formed element, and answers how much
/// was consumed. `out` gets at least the capacity given. A chunk needs `kRoom` elements of room at
/// most.
template <std::size_t kChunk, std::size_t kRoom, typename From, typename String>
std::size_t TranscodeInChunks(const From* source, std::size_t count, std::size_t capacity,
                              ChunkTranscoder<From, typename String::value_type> transcode,
                              String& out) {
    return count <= kChunk ? TranscodeShort<kRoom>(source, count, capacity, transcode, out)
                           : TranscodeLong<kRoom>(source, count, capacity, transcode, out);
}
