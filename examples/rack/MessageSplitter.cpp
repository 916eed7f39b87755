#include "examples/rack/MessageSplitter.h"

namespace {

constexpr std::uint8_t kSysexStart = 0xF0;
constexpr std::uint8_t kSysexEnd = 0xF7;
constexpr std::uint8_t kFirstRealTime = 0xF8;
// Longer than any surface's message; a stream that never ends one takes no more memory.
constexpr std::size_t kLongestMessage = 1 << 16;

/// How long a message is, its status byte included, after "Summary of MIDI Messages" of the
/// MIDI 1.0 specification; system exclusive has no length of its own.
std::size_t LengthOf(std::uint8_t status) {
    switch (status & 0xF0) {
    case 0xC0:
    case 0xD0:
        return 2;
    case 0xF0:
        return status == 0xF2 ? 3 : status == 0xF1 || status == 0xF3 ? 2 : 1;
    default:
        return 3;
    }
}

} // namespace

void MessageSplitter::Take(std::span<const std::uint8_t> bytes, const Receiver& receiver) {
    for (const std::uint8_t byte : bytes)
        TakeByte(byte, receiver);
}

void MessageSplitter::TakeByte(std::uint8_t byte, const Receiver& receiver) {
    if (byte >= kFirstRealTime) {
        receiver({byte});
        return;
    }
    const bool inSysex = !fMessage.empty() && fMessage.front() == kSysexStart;
    if (byte >= 0x80 && !(inSysex && byte == kSysexEnd))
        fMessage.clear(); // a status byte ends whatever was unfinished
    if (byte < 0x80 && fMessage.empty())
        return;
    if (fMessage.size() < kLongestMessage)
        fMessage.push_back(byte);

    const std::uint8_t status = fMessage.front();
    const bool isWhole =
        status == kSysexStart ? byte == kSysexEnd : fMessage.size() == LengthOf(status);
    if (!isWhole)
        return;
    const MidiBytes message = std::move(fMessage);
    fMessage.clear();
    if (message.front() < kSysexStart)
        fMessage.push_back(message.front()); // running status
    receiver(message);
}
