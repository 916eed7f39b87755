#include "XML/PackedAttributes.h"

#include <cstdint>

namespace Kestrin {

namespace {

constexpr std::size_t kLengthUnits = 2;
constexpr int kUnitBits = 16;
constexpr std::uint32_t kIsItemName = ~0U; // in place of a length

void AppendLength(UTF16String& texts, std::uint32_t length) {
    texts += static_cast<unsigned short>(length);
    texts += static_cast<unsigned short>(length >> kUnitBits);
}

void Append(UTF16String& texts, const UString& text) {
    AppendLength(texts, static_cast<std::uint32_t>(text.length()));
    texts.append(text.data(), text.length());
}

UString Next(const UTF16String& texts, std::size_t& at, const UString& itemName) {
    const std::uint32_t length = texts[at] + (std::uint32_t{texts[at + 1]} << kUnitBits);
    at += kLengthUnits;
    if (length == kIsItemName)
        return itemName;
    at += length;
    return UString(texts.substr(at - length, length));
}

} // namespace

PackedAttributes::PackedAttributes(const AttributeList& attributes, const UString& name) {
    std::size_t length = 0;
    for (const AttributePair& pair : attributes)
        length +=
            2 * kLengthUnits + pair.name.length() + (pair.value == name ? 0 : pair.value.length());
    fTexts.reserve(length);
    for (const AttributePair& pair : attributes) {
        Append(fTexts, pair.name);
        if (pair.value == name)
            AppendLength(fTexts, kIsItemName);
        else
            Append(fTexts, pair.value);
    }
}

AttributeList PackedAttributes::Unpacked(const UString& name) const {
    AttributeList attributes;
    for (std::size_t at = 0; at < fTexts.length();) {
        UString pairName = Next(fTexts, at, name);
        attributes.push_back({std::move(pairName), Next(fTexts, at, name)});
    }
    return attributes;
}

} // namespace Kestrin
