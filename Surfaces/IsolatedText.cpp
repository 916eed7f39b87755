#include "Surfaces/IsolatedText.h"

#include "Surfaces/MidiObject.h"

#include <algorithm>
#include <vector>

namespace {

constexpr UniChar kFirstIsolate = 0x2066;
constexpr UniChar kIsolate = 0x2068;
constexpr UniChar kEndOfIsolate = 0x2069;

/// Units of UTF-16; the scripts beyond 16 bits are told by the first of their two units.
bool TurnsDirection(UniChar unit) {
    static constexpr UniChar kRanges[][2] = {
        {0x0590, 0x08FF}, {0x200E, 0x200F}, {0x202A, 0x202E}, {kFirstIsolate, kEndOfIsolate},
        {0xD802, 0xD803}, {0xD83A, 0xD83B}, {0xFB1D, 0xFDFF}, {0xFE70, 0xFEFE}};
    for (const auto& [first, last] : kRanges) {
        if (unit >= first && unit <= last)
            return true;
    }
    return false;
}

} // namespace

std::string Isolated(const std::string& utf8) {
    const MidiObject::Text text = MidiObject::ToText(utf8);
    const CFIndex length = text ? CFStringGetLength(text.Get()) : 0;
    std::vector<UniChar> units(static_cast<std::size_t>(length));
    if (text)
        CFStringGetCharacters(text.Get(), CFRangeMake(0, length), units.data());
    if (std::none_of(units.begin(), units.end(), TurnsDirection))
        return utf8;

    std::vector<UniChar> isolated{kIsolate};
    std::size_t open = 1;
    for (const UniChar unit : units) {
        // An end that has no beginning would end the isolation itself.
        if (unit == kEndOfIsolate && open == 1)
            continue;
        open += unit >= kFirstIsolate && unit <= kIsolate ? 1 : 0;
        open -= unit == kEndOfIsolate ? 1 : 0;
        isolated.push_back(unit);
    }
    isolated.insert(isolated.end(), open, kEndOfIsolate);
    return MidiObject::FromText(
        MidiObject::Text(CFStringCreateWithCharacters(nullptr, isolated.data(),
                                                      static_cast<CFIndex>(isolated.size())))
            .Get());
}

std::string CutToBytes(std::string utf8, std::size_t most) {
    if (utf8.size() <= most)
        return utf8;
    while (most > 0 && (static_cast<unsigned char>(utf8[most]) & 0xC0U) == 0x80U)
        --most;
    utf8.resize(most);
    return utf8;
}
