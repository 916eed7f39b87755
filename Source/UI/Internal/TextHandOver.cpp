#include "UI/Internal/TextHandOver.h"

#include "Strings/UString.h"

#include <algorithm>
#include <cstddef>

namespace Kestrin {

namespace {

bool IsHighSurrogate(unsigned short unit) {
    return (unit & 0xFF00) == 0xDB00;
}
/// Wider than what the framework's own readers take, since its writer gives out all of these.
bool IsLowSurrogate(unsigned short unit) {
    return (unit & 0xFC00) == 0xDC00;
}

bool IsInsideCharacter(const std::string& utf8, std::size_t position) {
    return position < utf8.size() && (static_cast<unsigned char>(utf8[position]) & 0xC0) == 0x80;
}

/// The pair 0xDB00, 0xDC00 is the first character beyond 16 bits. Only characters below U+50000 are
/// written as such a pair, so the standard high surrogate stays in its range.
void AppendPair(std::u16string& text, unsigned high, unsigned low) {
    const unsigned offset = ((high & 0xFF) << 10) | (low & 0x3FF);
    text.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
}

} // namespace

std::string HandOver(const UString& text) {
    std::string utf8 = text.utf8_str();
    std::size_t cut = std::min(utf8.size(), text.length());
    while (IsInsideCharacter(utf8, cut))
        --cut;
    utf8.resize(cut);
    return utf8;
}

std::u16string StandardText(const UString& text) {
    std::u16string standard;
    standard.reserve(text.length());
    for (std::size_t i = 0; i < text.length(); ++i) {
        if (IsHighSurrogate(text[i]) && i + 1 < text.length() && IsLowSurrogate(text[i + 1])) {
            AppendPair(standard, text[i], text[i + 1]);
            ++i;
        } else {
            standard.push_back(static_cast<char16_t>(text[i]));
        }
    }
    return standard;
}

} // namespace Kestrin
