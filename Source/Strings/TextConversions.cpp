#include "Strings/TextConversions.h"

#include <locale.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale>
#include <sstream>

namespace {

using BaseManipulator = std::ios_base& (*)(std::ios_base&);

BaseManipulator BaseOf(NumFormat format) {
    return format == kHexFormat ? static_cast<BaseManipulator>(std::hex) : std::dec;
}

/// The value of a hexadecimal digit, or -1 for any other unit.
int DigitValue(unsigned short unit) {
    const int byte = unit & 0xFF;
    if (byte >= '0' && byte <= '9')
        return byte - '0';
    const int letter = byte | 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

/// Reads hexadecimal digits out of a text, passing over everything else.
class DigitReader {
public:
    explicit DigitReader(const UString& text)
        : fAt(text.begin())
        , fEnd(text.end()) {}

    /// The next digit's value, or -1 at the end.
    int Next() {
        while (fAt != fEnd) {
            const int value = DigitValue(*fAt++);
            if (value >= 0)
                return value;
        }
        return -1;
    }

private:
    const unsigned short* fAt;
    const unsigned short* fEnd;
};

} // namespace

UString NumToUString(long value, NumFormat format) {
    UString text;
    UString::FormattedStreamProxy(text).Stream() << BaseOf(format) << value;
    return text;
}

long UStringToNum(const UString& text, NumFormat format) {
    std::istringstream stream(text.string(UString::kASCII, ' ', false));
    stream.imbue(std::locale::classic());
    long value = 0;
    stream >> BaseOf(format) >> value;
    return value;
}

UString DoubleToUStringPrecise(double value) {
    double whole = 0.0;
    const int precision = std::modf(value, &whole) == 0.0 ? 0 : 6;
    // A sign, every digit of the largest value, the point and what follows it.
    char digits[1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + 6];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value,
                                   std::chars_format::fixed, precision);
    return UString(std::string(digits, end.ptr), UString::kASCII);
}

double UStringToDouble(const UString& text) {
    static const locale_t kCLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text.string(UString::kASCII, 'x', false).c_str(), nullptr, kCLocale);
}

bool IsNumeric(const UString& text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned short unit) { return unit >= '0' && unit <= '9'; });
}

UString OSTypeToUString(unsigned int code) {
    const char bytes[] = {static_cast<char>(code >> 24), static_cast<char>(code >> 16),
                          static_cast<char>(code >> 8), static_cast<char>(code), '\0'};
    return UString(bytes, UString::kASCII);
}

unsigned int UStringToOSType(const UString& text) {
    unsigned int code = 0;
    for (std::size_t i = 0; i < 4; ++i)
        code = code << 8 | (i < text.length() ? text[i] & 0xFF : 0);
    return code;
}

void UStringToRawData(const UString& text, unsigned char* out, unsigned int capacity) {
    DigitReader digits(text);
    for (unsigned int written = 0; written < capacity; ++written) {
        const int high = digits.Next();
        const int low = digits.Next();
        if (low < 0)
            return;
        out[written] = static_cast<unsigned char>(high << 4 | low);
    }
}
