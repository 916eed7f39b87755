#include "app/ShortenedText.h"

namespace {

const unsigned short kEllipsis = 0x2026;

/// Whether a character begins at `index`; false inside a surrogate pair.
bool IsCharacterStart(const UString& text, std::size_t index) {
    const unsigned short unit = text[index];
    return unit < 0xDC00 || unit > 0xDFFF;
}

UString Cut(const UString& text, std::size_t length) {
    while (length > 0 && !IsCharacterStart(text, length))
        --length;
    UString cut(text, 0, length);
    cut.append(UString(kEllipsis));
    return cut;
}

} // namespace

UString ShortenedText(const Kestrin::View& view, const UString& text, float width) {
    if (view.StringWidth(text) <= width)
        return text;
    std::size_t fits = 0;
    for (std::size_t tooLong = text.length(); fits + 1 < tooLong;) {
        const std::size_t middle = fits + (tooLong - fits) / 2;
        (view.StringWidth(Cut(text, middle)) <= width ? fits : tooLong) = middle;
    }
    const UString shortened = Cut(text, fits);
    return view.StringWidth(shortened) <= width ? shortened : UString();
}
