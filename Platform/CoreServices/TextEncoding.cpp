#include <CoreServices/TextEncoding.h>

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

// The Mac's own table, of the version with the euro sign at 0xDB and the apple at 0xF0.
constexpr char kMacRomanTable[] = "macos-0_2-10.2";
constexpr UInt8 kUnmappable = '?';

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterHolder = std::unique_ptr<UConverter, CloseConverter>;

/// What a conversion has come to, in bytes, and why it ended.
struct Conversion {
    ByteCount read;
    ByteCount written;
    OSStatus status;
};

} // namespace

/// A converter between Mac Roman and UTF-16, in either direction.
struct TextEncodingConverter {
    explicit TextEncodingConverter(ConverterHolder macRoman)
        : fMacRoman(std::move(macRoman)) {}
    virtual ~TextEncodingConverter() = default;

    virtual Conversion Convert(ConstTextPtr input, ByteCount inputLength, TextPtr output,
                               ByteCount outputLength) = 0;
    void Reset() { ucnv_reset(fMacRoman.get()); }

protected:
    ConverterHolder fMacRoman;
};

namespace {

class MacRomanToUTF16 final : public TextEncodingConverter {
public:
    using TextEncodingConverter::TextEncodingConverter;

    // Every byte is a character of one unit.
    Conversion Convert(ConstTextPtr input, ByteCount inputLength, TextPtr output,
                       ByteCount outputLength) override {
        const auto* source = reinterpret_cast<const char*>(input);
        auto* target = reinterpret_cast<UChar*>(output);
        const ByteCount count = std::min(inputLength, outputLength / sizeof(UChar));
        UErrorCode error = U_ZERO_ERROR;
        ucnv_toUnicode(fMacRoman.get(), &target, target + count, &source, source + count, nullptr,
                       false, &error);
        return {count, count * sizeof(UChar),
                count < inputLength ? kTECOutputBufferFullStatus : noErr};
    }
};

class UTF16ToMacRoman final : public TextEncodingConverter {
public:
    explicit UTF16ToMacRoman(ConverterHolder macRoman)
        : TextEncodingConverter(std::move(macRoman)) {
        UErrorCode error = U_ZERO_ERROR;
        ucnv_setFromUCallBack(fMacRoman.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                              &error);
    }

    Conversion Convert(ConstTextPtr input, ByteCount inputLength, TextPtr output,
                       ByteCount outputLength) override {
        const ByteCount whole = WholeCharacters(input, inputLength);
        const auto* source = reinterpret_cast<const UChar*>(input);
        const UChar* const sourceEnd = source + whole / sizeof(UChar);
        auto* target = reinterpret_cast<char*>(output);
        const char* const targetEnd = target + outputLength;
        while (ConvertRun(source, sourceEnd, target, targetEnd)) {
        }
        const OSStatus status = source < sourceEnd    ? kTECOutputBufferFullStatus
                                : whole < inputLength ? kTECPartialCharErr
                                                      : noErr;
        return {static_cast<ByteCount>(reinterpret_cast<ConstTextPtr>(source) - input),
                static_cast<ByteCount>(reinterpret_cast<TextPtr>(target) - output), status};
    }

private:
    /// The number of input bytes that make whole characters.
    static ByteCount WholeCharacters(ConstTextPtr input, ByteCount length) {
        length -= length % sizeof(UChar);
        UChar last = 0;
        if (length > 0)
            std::memcpy(&last, input + length - sizeof last, sizeof last);
        return U16_IS_LEAD(last) ? length - sizeof last : length;
    }

    /// Converts up to the first character without a counterpart and writes the substitute for it.
    /// Answers whether there may be more to do.
    bool ConvertRun(const UChar*& source, const UChar* sourceEnd, char*& target,
                    const char* targetEnd) {
        UErrorCode error = U_ZERO_ERROR;
        ucnv_fromUnicode(fMacRoman.get(), &target, targetEnd, &source, sourceEnd, nullptr, true,
                         &error);
        if (error != U_INVALID_CHAR_FOUND && error != U_ILLEGAL_CHAR_FOUND)
            return false;
        if (target == targetEnd) {
            source -= InvalidUnits();
            return false;
        }
        *target++ = kUnmappable;
        return source < sourceEnd;
    }

    /// The length of the character that the last run stopped behind.
    int InvalidUnits() const {
        UChar units[U16_MAX_LENGTH];
        int8_t count = U16_MAX_LENGTH;
        UErrorCode error = U_ZERO_ERROR;
        ucnv_getInvalidUChars(fMacRoman.get(), units, &count, &error);
        return count;
    }
};

ConverterHolder OpenMacRoman() {
    UErrorCode error = U_ZERO_ERROR;
    ConverterHolder converter(ucnv_open(kMacRomanTable, &error));
    return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

std::unique_ptr<TextEncodingConverter> MakeConverter(TextEncoding from, TextEncoding to) {
    const TextEncoding macRoman = CreateTextEncoding(kTextEncodingMacRoman, 0, 0);
    const TextEncoding utf16 = CreateTextEncoding(kTextEncodingUnicodeDefault, 0, 0);
    ConverterHolder table = OpenMacRoman();
    if (table && from == macRoman && to == utf16)
        return std::make_unique<MacRomanToUTF16>(std::move(table));
    if (table && from == utf16 && to == macRoman)
        return std::make_unique<UTF16ToMacRoman>(std::move(table));
    return nullptr;
}

} // namespace

TextEncoding CreateTextEncoding(TextEncodingBase base, TextEncodingVariant variant,
                                TextEncodingFormat format) {
    return base | variant << 16 | format << 26;
}

OSStatus TECCreateConverter(TECObjectRef* converter, TextEncoding from, TextEncoding to) {
    *converter = MakeConverter(from, to).release();
    return *converter ? noErr : kTextUnsupportedEncodingErr;
}

OSStatus TECConvertText(TECObjectRef converter, ConstTextPtr input, ByteCount inputLength,
                        ByteCount* actualInputLength, TextPtr output, ByteCount outputLength,
                        ByteCount* actualOutputLength) {
    const Conversion done = converter ? converter->Convert(input, inputLength, output, outputLength)
                                      : Conversion{0, 0, paramErr};
    *actualInputLength = done.read;
    *actualOutputLength = done.written;
    return done.status;
}

OSStatus TECClearConverterContextInfo(TECObjectRef converter) {
    if (!converter)
        return paramErr;
    converter->Reset();
    return noErr;
}

OSStatus TECDisposeConverter(TECObjectRef converter) {
    delete converter;
    return converter ? noErr : paramErr;
}
