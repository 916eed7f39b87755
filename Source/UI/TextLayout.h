#pragma once

#include "Strings/UString.h"
#include "UI/Color.h"
#include "UI/TextStyle.h"

#include <memory>

class CGContext;

namespace Kestrin {

/// One text in one font and colour, either a single line (clipped or truncated) or broken at words
/// within a line length. It measures and draws; nothing is laid out before a measure or the drawing
/// asks for it, nor twice. Measures are in points.
class TextLayout {
public:
    static std::unique_ptr<TextLayout> Create();
    virtual ~TextLayout();

    // Text and style.

    /// The only setter that counts as a change even when the value is the same.
    virtual void SetText(const UString& text) = 0;
    virtual const UString& GetText() const = 0;
    virtual void SetFont(FontID family, unsigned int size) = 0;
    virtual void SetColor(const RGBAColor& color) = 0;
    /// The length that lines are aligned, truncated or broken within; as good as endless at first.
    virtual void SetLineLength(float length) = 0;
    /// Applies where the text is not wrapped.
    virtual void SetTruncate(TextTruncate truncate) = 0;
    /// An unknown value is logged and taken as kTextAlignDefault.
    virtual void SetAlignment(TextAlignment alignment) = 0;
    virtual void SetWrap(TextWrap wrap) = 0;

    // Measures of the laid-out text.

    /// Ascent, descent and leading are those of the last line; of the font where there is no text.
    virtual float GetAscent() = 0;
    virtual float GetDescent() = 0;
    /// The width of the widest line; 0 without text.
    virtual float Width() = 0;
    /// The height of all lines without the leading of the last.
    virtual float Height() = 0;
    virtual float LineHeight() = 0;

    /// Draws with the start of the first baseline at the context's origin.
    virtual void DrawLayout(CGContext* context) = 0;

    virtual std::unique_ptr<TextLayout> Clone() const = 0;
    /// Takes all but the text back to what a new layout has.
    virtual void ClearStyle() = 0;

    // The single values of the style.

    virtual void SetFontFamily(FontID family) = 0;
    virtual void SetSize(double size) = 0;
    /// Extra points between lines; shows at the next layout that another change causes.
    virtual void SetLineSpacing(double spacing) = 0;
    /// Kept for GetTracking; the text is not changed by it.
    virtual void SetTracking(double tracking) = 0;
    virtual void SetHorizontalScale(double scale) = 0;
    virtual void SetVerticalScale(double scale) = 0;
    virtual FontID GetFontFamilyID() const = 0;
    virtual double GetSize() const = 0;
    virtual float GetLeading() = 0;
    virtual float GetXHeight() = 0;
    virtual double GetTracking() = 0;
    virtual double GetHorizontalScale() = 0;
    virtual double GetVerticalScale() = 0;
};

} // namespace Kestrin
