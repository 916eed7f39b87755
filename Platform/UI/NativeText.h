#pragma once

#include "Platform/UI/CGContext.h"

#include <cstddef>
#include <memory>
#include <string>

namespace Kestrin {

/// A typeface at one size. Measures are in points.
class NativeFont {
public:
    virtual ~NativeFont() = default;
    virtual double GetAscent() const = 0;
    virtual double GetDescent() const = 0;
    virtual double GetXHeight() const = 0;
};

/// What the whole of a text bears beside its font: its colour (components from 0 to 1) and its
/// paragraph settings. Lines are broken and placed by whoever lays the text out; of the paragraph
/// settings only the spacing changes a line's own measures.
struct NativeTextStyle {
    struct Color {
        double red, green, blue, alpha;
    };

    std::shared_ptr<const NativeFont> font;
    Color color = {0, 0, 0, 1};
    /// Left 0, right 1, centre 2, justified 3, natural 4.
    unsigned char alignment = 4;
    /// Word wrapping 0, clipping 2, truncating at the head 3, the tail 4, the middle 5.
    unsigned char lineBreakMode = 2;
    /// Points added to the leading of each line.
    double lineSpacing = 0;
};

/// Where a truncated line gives up its text.
enum class NativeTruncation { kStart, kMiddle, kEnd };

/// One line of laid-out text, any script and direction. It stays valid after its typesetter is
/// gone.
class NativeTextLine {
public:
    /// Measures in points; the width counts trailing blanks.
    struct Bounds {
        double width = 0;
        double ascent = 0;
        double descent = 0;
        double leading = 0;
    };

    virtual ~NativeTextLine() = default;
    virtual Bounds GetTypographicBounds() const = 0;

    /// How far from the left the line starts when it is set within `width` points: at the left for
    /// a factor of 0, centred for 0.5, at the right for 1. Trailing blanks do not count; a line
    /// wider than `width` starts at 0.
    virtual double GetPenOffsetForFlush(double factor, double width) const = 0;

    /// The line shortened to `width` points, the token's text in place of what was left out. A line
    /// that fits comes back whole; null when not even the token fits.
    virtual std::unique_ptr<NativeTextLine>
    CreateTruncatedLine(double width, NativeTruncation where,
                        const NativeTextLine& token) const = 0;

    /// Draws the line upright with the left end of its baseline at `origin`. The context's stroke
    /// is not the same afterwards.
    virtual void Draw(CGContext& context, CGPoint origin) const = 0;
};

/// Makes lines of one styled text. Positions and counts are in the text's 16-bit units.
class NativeTypesetter {
public:
    virtual ~NativeTypesetter() = default;

    /// How many units from `start` (less than the text's length) make a line of at most `width`
    /// points: up to the end of a word, its blanks included, or behind a line end; within a word
    /// only when that is longer than the whole line. At least one.
    virtual std::size_t SuggestLineBreak(std::size_t start, double width) const = 0;

    virtual std::unique_ptr<NativeTextLine> CreateLine(std::size_t start,
                                                       std::size_t count) const = 0;
};

/// The platform's text: the maker of fonts and typesetters.
class NativeTextSystem {
public:
    virtual ~NativeTextSystem() = default;

    /// The font of that family (UTF-8) and size in points, its glyphs scaled by the two factors.
    /// Words of style at the name's end ("Bold", "Condensed", "Italic") are taken as such where no
    /// family has the whole name; in place of a family that is not installed comes a sans serif.
    virtual std::shared_ptr<const NativeFont> CreateFont(const std::string& family, double size,
                                                         double horizontalScale,
                                                         double verticalScale) = 0;

    /// A typesetter for `text`; the style's font was made by this system.
    virtual std::unique_ptr<NativeTypesetter> CreateTypesetter(std::u16string text,
                                                               const NativeTextStyle& style) = 0;

    /// The one of this process.
    static NativeTextSystem& Shared();
};

} // namespace Kestrin
