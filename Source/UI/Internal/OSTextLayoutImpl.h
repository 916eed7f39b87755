#pragma once

#include "UI/TextLayout.h"

#include "Platform/UI/NativeText.h"

#include <vector>

namespace Kestrin {

/// The text layout over the platform's text. Setters record values and mark what they change; every
/// measure and the drawing first bring fonts and lines up to date.
class OSTextLayoutImpl final : public TextLayout {
public:
    /// `system` outlives the layout.
    explicit OSTextLayoutImpl(NativeTextSystem& system);
    ~OSTextLayoutImpl() override;

    void SetText(const UString& text) override;
    const UString& GetText() const override { return fText; }
    void SetFont(FontID family, unsigned int size) override;
    void SetColor(const RGBAColor& color) override { Store(fStyle.color, color, fStyleDirty); }
    void SetLineLength(float length) override {
        Store(fStyle.lineLength, static_cast<double>(length), fLayoutDirty);
    }
    void SetTruncate(TextTruncate truncate) override {
        Store(fStyle.truncate, truncate, fLayoutDirty);
    }
    void SetAlignment(TextAlignment alignment) override {
        Store(fStyle.alignment, CodeOf(alignment), fLayoutDirty);
    }
    void SetWrap(TextWrap wrap) override { Store(fStyle.wrap, wrap, fLayoutDirty); }

    float GetAscent() override { return static_cast<float>(Updated(fMetrics.ascent)); }
    float GetDescent() override { return static_cast<float>(Updated(fMetrics.descent)); }
    float Width() override { return static_cast<float>(Updated(fMetrics.width)); }
    float Height() override;
    float LineHeight() override;
    void DrawLayout(CGContext* context) override;
    std::unique_ptr<TextLayout> Clone() const override;
    void ClearStyle() override;

    void SetFontFamily(FontID family) override { Store(fStyle.family, family, fStyleDirty); }
    void SetSize(double size) override { Store(fStyle.size, size, fStyleDirty); }
    void SetLineSpacing(double spacing) override { fStyle.lineSpacing = spacing; }
    void SetTracking(double tracking) override { fStyle.tracking = tracking; }
    void SetHorizontalScale(double scale) override {
        Store(fStyle.horizontalScale, scale, fStyleDirty);
    }
    void SetVerticalScale(double scale) override {
        Store(fStyle.verticalScale, scale, fStyleDirty);
    }
    FontID GetFontFamilyID() const override { return fStyle.family; }
    double GetSize() const override { return fStyle.size; }
    float GetLeading() override { return static_cast<float>(Updated(fMetrics.leading)); }
    float GetXHeight() override { return static_cast<float>(Updated(fMetrics.xHeight)); }
    double GetTracking() override { return Updated(fStyle.tracking); }
    double GetHorizontalScale() override { return Updated(fStyle.horizontalScale); }
    double GetVerticalScale() override { return Updated(fStyle.verticalScale); }

private:
    /// The platform's codes of where a line stands.
    enum AlignmentCode : unsigned char {
        kLeftCode = 0,
        kRightCode = 1,
        kCenterCode = 2,
        kJustifiedCode = 3,
        kNaturalCode = 4
    };

    /// The platform's codes of what happens to a text that is wider than a line.
    enum LineBreakCode : unsigned char {
        kWordWrappingCode = 0,
        kClippingCode = 2,
        kTruncateHeadCode = 3,
        kTruncateTailCode = 4,
        kTruncateMiddleCode = 5
    };

    struct Style {
        TextTruncate truncate = kTruncateNone;
        TextWrap wrap = kWrapNone;
        FontID family = kFont1;
        RGBAColor color = {0, 0, 0, 1};
        double size = 12.0;
        AlignmentCode alignment = kNaturalCode;
        LineBreakCode lineBreakMode = kClippingCode;
        double lineLength = 3.4028234663852886e+38;
        double horizontalScale = 1.0;
        double verticalScale = 1.0;
        double lineSpacing = 0;
        double tracking = 0;
    };

    struct Metrics {
        double ascent = 0;
        double descent = 0;
        double leading = 0;
        double width = 0;
        double xHeight = 0;
    };

    struct Line {
        std::unique_ptr<NativeTextLine> line;
        CGPoint origin;
    };

    static AlignmentCode CodeOf(TextAlignment alignment);

    template <typename Value>
    static void Store(Value& stored, Value value, bool& dirty) {
        dirty = dirty || stored != value;
        stored = value;
    }
    /// The measure, once it is true of the text and style of now.
    double Updated(const double& measure) {
        Update();
        return measure;
    }

    void Update();
    void UpdateStyle();
    void UpdateLayout();
    LineBreakCode CurrentLineBreakMode() const;
    double FlushFactor() const;
    void LayOutLines(const NativeTypesetter& typesetter, const NativeTextLine& token);
    void LayOutWrapped(const NativeTypesetter& typesetter, double flushFactor);
    void LayOutSingle(const NativeTypesetter& typesetter, const NativeTextLine& token,
                      double flushFactor);
    std::unique_ptr<NativeTextLine> Truncated(std::unique_ptr<NativeTextLine> line,
                                              const NativeTextLine& token) const;
    NativeTextLine::Bounds TakeBounds(const NativeTextLine& line);
    void AppendLine(std::unique_ptr<NativeTextLine> line, double flushFactor, double y);
    void StrokeSegments(CGContext& context) const;

    NativeTextSystem& fSystem;
    Style fStyle;
    UString fText;
    NativeTextStyle fAttributes;
    std::vector<Line> fLines;
    double fStrokeWidth = 1;
    /// Lines to stroke before the text, two points each; this layout leaves them empty.
    std::vector<CGPoint> fSegments;
    Metrics fMetrics;
    bool fLayoutDirty = true;
    bool fStyleDirty = true;
};

} // namespace Kestrin
