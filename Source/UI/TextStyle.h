#pragma once

#include <cstdint>

namespace Kestrin {

/// Which typeface (FontNames.h tells its name). The first four are chosen by the localized strings;
/// a value above kFontPlain stands for kFont2.
enum FontID : std::uint32_t {
    kFont1 = 0,
    kFont2 = 1,
    kFont3 = 2,
    kFont4 = 3,
    kFontBold = 4,
    kFontCondensedBold = 5,
    kFontBoldItalic = 6,
    kFontPlain = 7
};

/// Where the lines of a text stand between the left and the right.
enum TextAlignment : std::uint32_t {
    /// The platform's natural alignment, which is left.
    kTextAlignDefault = 0,
    kTextAlignLeft = 1,
    kTextAlignCenter = 2,
    kTextAlignRight = 3
};

/// How a single line that is too long ends: clipped, or shortened with an ellipsis.
enum TextTruncate : std::uint32_t {
    kTruncateNone = 0,
    kTruncateHead = 1,
    kTruncateMiddle = 2,
    kTruncateTail = 3
};

/// Whether a text is one line, which truncation applies to, or is broken at words.
enum TextWrap : std::uint32_t { kWrapNone = 0, kWrapWord = 1 };

} // namespace Kestrin
