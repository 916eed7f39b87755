#include "Strings/SortedVectorMap.h"
#include "Strings/Transcoders.h"

#include <CoreServices/TextEncoding.h>

#include <mutex>

namespace {

using ConverterMap = sorted_vector_map<TextEncoding, TECObjectRef>;

enum class Direction { kIntoUTF16, kOutOfUTF16 };

TextEncoding MacRomanEncoding() {
    return CreateTextEncoding(kTextEncodingMacRoman, kTextEncodingDefaultVariant,
                              kTextEncodingDefaultFormat);
}

TextEncoding UTF16Encoding() {
    static const TextEncoding kUTF16Encoding = CreateTextEncoding(
        kTextEncodingUnicodeDefault, kTextEncodingDefaultVariant, kTextEncodingDefaultFormat);
    return kUTF16Encoding;
}

/// Keeps one converter for each encoding and direction from its first use to the end of the
/// program.
class TECConverterMgr {
public:
    TECConverterMgr() = default;
    TECConverterMgr(const TECConverterMgr&) = delete;
    TECConverterMgr& operator=(const TECConverterMgr&) = delete;
    ~TECConverterMgr() {
        DisposeAll(fIntoUTF16);
        DisposeAll(fOutOfUTF16);
    }

    /// The converter, ready for new text; null where the platform has none. The caller holds the
    /// direction's mutex for as long as it uses the converter.
    TECObjectRef Converter(TextEncoding encoding, Direction direction) {
        ConverterMap& map = direction == Direction::kIntoUTF16 ? fIntoUTF16 : fOutOfUTF16;
        const auto place = map.lower_bound(encoding);
        if (!map.HoldsAt(place, encoding))
            return map.insert(place, {encoding, Create(encoding, direction)})->second;
        TECClearConverterContextInfo(place->second);
        return place->second;
    }

private:
    static TECObjectRef Create(TextEncoding encoding, Direction direction) {
        const bool into = direction == Direction::kIntoUTF16;
        TECObjectRef converter = nullptr;
        // Without a converter the conversions report that nothing was read.
        TECCreateConverter(&converter, into ? encoding : UTF16Encoding(),
                           into ? UTF16Encoding() : encoding);
        return converter;
    }

    static void DisposeAll(const ConverterMap& map) {
        for (const auto& [encoding, converter] : map)
            TECDisposeConverter(converter);
    }

    ConverterMap fIntoUTF16;
    ConverterMap fOutOfUTF16;
};

std::mutex kToUTF16Mutex;
std::mutex kFromUTF16Mutex;

TECConverterMgr& ConverterMgr() {
    static TECConverterMgr kConverterMgr;
    return kConverterMgr;
}

} // namespace

std::size_t MacRoman_to_utf16(const unsigned char* source, std::size_t count, UTF16String& out) {
    constexpr std::size_t kSpareUnits = 100;
    if (count == 0) {
        out.clear();
        return 0;
    }
    const std::lock_guard lock(kToUTF16Mutex);
    const TECObjectRef converter =
        ConverterMgr().Converter(MacRomanEncoding(), Direction::kIntoUTF16);
    out.resize(count + kSpareUnits);
    ByteCount read = 0;
    ByteCount written = 0;
    TECConvertText(converter, source, count, &read, reinterpret_cast<TextPtr>(out.data()),
                   out.size() * sizeof(unsigned short), &written);
    out.resize(written / sizeof(unsigned short));
    return read;
}

std::size_t utf16_to_MacRoman(const unsigned short* source, std::size_t count, std::string& out) {
    if (count == 0) {
        out.clear();
        return 0;
    }
    const std::lock_guard lock(kFromUTF16Mutex);
    const TECObjectRef converter =
        ConverterMgr().Converter(MacRomanEncoding(), Direction::kOutOfUTF16);
    // No unit becomes more than one byte.
    out.resize(count);
    ByteCount read = 0;
    ByteCount written = 0;
    TECConvertText(converter, reinterpret_cast<ConstTextPtr>(source), count * sizeof *source, &read,
                   reinterpret_cast<TextPtr>(out.data()), out.size(), &written);
    out.resize(written);
    return read / sizeof *source;
}
