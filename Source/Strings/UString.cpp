#include "Strings/UString.h"

#include "Strings/Transcoders.h"

#include <algorithm>
#include <locale>
#include <utility>

// First of all that the program makes at its start: whoever is made then may refer to it.
[[gnu::init_priority(101)]] const UString UString::kEmptyString;

namespace {

const unsigned char* AsBytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

std::string Narrowed(const UTF16String& units, char substitute) {
    std::string bytes(units.length(), substitute);
    std::transform(units.begin(), units.end(), bytes.begin(), [substitute](unsigned short unit) {
        return unit < 0x80 ? static_cast<char>(unit) : substitute;
    });
    return bytes;
}

} // namespace

UString::UString(const UString& text, std::size_t position, std::size_t count)
    : fUnits(text.fUnits, position, count) {}

UString::UString(UTF16String units)
    : fUnits(std::move(units)) {}

UString::UString(const std::string& bytes, ByteEncoding encoding) {
    assign(AsBytes(bytes.data()), bytes.size(), encoding);
}

UString::UString(const char* bytes, ByteEncoding encoding) {
    assign(AsBytes(bytes), std::strlen(bytes), encoding);
}

UString::UString(const unsigned char* bytes, std::size_t count, ByteEncoding encoding) {
    assign(bytes, count, encoding);
}

UString::UString(unsigned short unit)
    : fUnits(1, unit) {}

UString& UString::assign(const UString& other) {
    fUnits = other.fUnits;
    return *this;
}

UString& UString::assign(const unsigned char* bytes, std::size_t count, ByteEncoding encoding) {
    fUnits.clear();
    switch (encoding) {
    case kUTF8:
        utf8_to_utf16(bytes, count, fUnits);
        break;
    case kMacRoman:
        MacRoman_to_utf16(bytes, count, fUnits);
        break;
    default:
        Widen(bytes, count);
    }
    return *this;
}

UString& UString::append(const UString& other) {
    fUnits.append(other.fUnits);
    return *this;
}

UString& UString::append(const unsigned char* bytes, std::size_t count, ByteEncoding encoding) {
    return append(UString(bytes, count, encoding));
}

UString& UString::operator+=(const std::string& bytes) {
    Widen(AsBytes(bytes.data()), bytes.size());
    return *this;
}

UString& UString::erase(std::size_t position, std::size_t count) {
    fUnits.erase(position, count);
    return *this;
}

void UString::resize(std::size_t count) {
    fUnits.resize(count);
}

std::size_t UString::find(const UString& needle, std::size_t position) const {
    return fUnits.find(needle.fUnits, position);
}

std::string UString::utf8_str() const {
    std::string bytes;
    utf16_to_utf8(fUnits.data(), fUnits.length(), bytes);
    return bytes;
}

UTF32String UString::utf32_str() const {
    UTF32String values;
    utf16_to_utf32(fUnits.data(), fUnits.length(), values);
    return values;
}

std::string UString::string(ByteEncoding encoding, char substitute, bool) const {
    switch (encoding) {
    case kUTF8:
        return utf8_str();
    case kMacRoman: {
        std::string bytes;
        utf16_to_MacRoman(fUnits.data(), fUnits.length(), bytes);
        return bytes;
    }
    default:
        return Narrowed(fUnits, substitute);
    }
}

/// Appends each byte as the unit of its value.
void UString::Widen(const unsigned char* bytes, std::size_t count) {
    const std::size_t start = fUnits.length();
    fUnits.resize(start + count);
    std::copy_n(bytes, count, fUnits.begin() + static_cast<std::ptrdiff_t>(start));
}

UString::FormattedStreamProxy::FormattedStreamProxy(UString& target)
    : fStream(std::make_unique<std::ostringstream>())
    , fTarget(target) {
    fStream->imbue(std::locale::classic());
}

UString::FormattedStreamProxy::~FormattedStreamProxy() {
    if (fStream)
        fTarget += fStream->str();
}
