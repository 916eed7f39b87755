#pragma once

#include "Strings/UTraits.h"

#include <memory>
#include <sstream>

/// The one string type of the system: a value of UTF-16 code units, followed by a 0 unit in memory.
/// Lengths and positions are in code units. Nothing is normalised; a 0 unit is ordinary content.
class UString {
public:
    /// How bytes are read and written. Any other value counts as kASCII.
    enum ByteEncoding : int {
        /// Reading ends silently at the first ill-formed sequence; see Transcoders.h.
        kUTF8 = 0,
        /// A byte is the unit of its value, 0x80 to 0xFF included.
        kASCII = 1,
        /// The Mac's own 8-bit encoding.
        kMacRoman = 2
    };

    /// Where a search found nothing; as a count: all the rest.
    static constexpr std::size_t npos = UTF16String::npos;

    class FormattedStreamProxy;

    /// What functions refer to that have no text to return.
    static const UString kEmptyString;

    // Making

    UString() = default;
    /// At most `count` units of `text` from `position` on; std::out_of_range past its length.
    UString(const UString& text, std::size_t position, std::size_t count = npos);
    UString(UTF16String units);
    UString(const std::string& bytes, ByteEncoding encoding);
    /// The bytes before the first 0 byte.
    UString(const char* bytes, ByteEncoding encoding);
    UString(const unsigned char* bytes, std::size_t count, ByteEncoding encoding);
    /// One unit, also of the value 0.
    explicit UString(unsigned short unit);

    // Changing

    UString& assign(const UString& other);
    UString& assign(const unsigned char* bytes, std::size_t count, ByteEncoding encoding);
    UString& append(const UString& other);
    UString& append(const unsigned char* bytes, std::size_t count, ByteEncoding encoding);
    /// Appends each byte as the unit of its value; nothing is decoded.
    UString& operator+=(const std::string& bytes);
    /// Removes at most `count` units from `position` on; std::out_of_range past the length.
    UString& erase(std::size_t position, std::size_t count);
    /// Cuts the text, or lengthens it with 0 units.
    void resize(std::size_t count);

    // Reading

    std::size_t length() const { return fUnits.length(); }
    bool empty() const { return fUnits.empty(); }
    const unsigned short* data() const { return fUnits.data(); }
    const unsigned short* begin() const { return fUnits.data(); }
    const unsigned short* end() const { return fUnits.data() + fUnits.length(); }
    /// Unchecked; the index may equal the length, where the closing 0 unit stands.
    unsigned short operator[](std::size_t index) const { return fUnits.data()[index]; }
    unsigned short& operator[](std::size_t index) { return fUnits.data()[index]; }
    /// The first place of the run of units at `position` or behind it, or npos.
    std::size_t find(const UString& needle, std::size_t position) const;

    // Writing out

    /// The text up to its first ill-formed surrogate; see Transcoders.h. Likewise utf32_str.
    std::string utf8_str() const;
    UTF16String utf16_str() const { return fUnits; }
    UTF32String utf32_str() const;
    /// The text as bytes. kASCII writes one byte a unit, `substitute` for those above 0x7F;
    /// kMacRoman and kUTF8 have no use for it. The last argument has no meaning.
    std::string string(ByteEncoding encoding, char substitute, bool) const;

private:
    friend bool operator==(const UString& a, const UString& b);
    friend bool operator<(const UString& a, const UString& b);

    void Widen(const unsigned char* bytes, std::size_t count);

    UTF16String fUnits;
};

/// A text literal: "Ok"_u. Each byte is the unit of its value.
inline UString operator""_u(const char* text, std::size_t length) {
    return {reinterpret_cast<const unsigned char*>(text), length, UString::kASCII};
}

/// Unit for unit; no case folding, no normalisation.
inline bool operator==(const UString& a, const UString& b) {
    return a.fUnits.length() == b.fUnits.length() &&
           std::memcmp(a.fUnits.data(), b.fUnits.data(),
                       a.fUnits.length() * sizeof(unsigned short)) == 0;
}

/// By the first unit that differs, as an unsigned number; a prefix comes first.
inline bool operator<(const UString& a, const UString& b) {
    return a.fUnits.compare(b.fUnits) < 0;
}

/// Collects what is written to its stream and appends it to the target, one unit a byte, when its
/// life ends. The stream follows the C locale. The target must outlive the proxy.
class UString::FormattedStreamProxy {
public:
    explicit FormattedStreamProxy(UString& target);
    ~FormattedStreamProxy();
    FormattedStreamProxy(const FormattedStreamProxy&) = delete;
    FormattedStreamProxy& operator=(const FormattedStreamProxy&) = delete;

    std::ostream& Stream() { return *fStream; }

private:
    std::unique_ptr<std::ostringstream> fStream;
    UString& fTarget;
};
