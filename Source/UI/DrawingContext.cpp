#include "UI/DrawingContext.h"

#include "Diagnostics/Failure.h"
#include "UI/Path.h"
#include "UI/TextLayout.h"

#include "Platform/UI/CGContext.h"

#include <cmath>
#include <cstdio>

namespace Kestrin {

struct DrawingContextData {
    /// Of the current draw event, not owned; null outside of one.
    CGContext* context = nullptr;
    std::unique_ptr<TextLayout> layout = TextLayout::Create();
    float baseAlpha = 1.0F;
    float alpha = 1.0F;
};

namespace {

/// The rectangle that `rect` describes, with extents that are not negative.
CGRect Normalised(const Rect& rect) {
    const double width = rect.width;
    const double height = rect.height;
    return {{rect.x + std::fmin(width, 0), rect.y + std::fmin(height, 0)},
            {std::fabs(width), std::fabs(height)}};
}

/// A saved graphics state, with the origin moved; on destruction, also by an exception, it is
/// restored and the context synchronised.
class TranslatedState {
public:
    TranslatedState(CGContext& context, double tx, double ty)
        : fContext(context) {
        fContext.SaveGState();
        fContext.TranslateCTM(tx, ty);
    }
    ~TranslatedState() {
        fContext.RestoreGState();
        fContext.Synchronize();
    }
    TranslatedState(const TranslatedState&) = delete;
    TranslatedState& operator=(const TranslatedState&) = delete;

private:
    CGContext& fContext;
};

} // namespace

DrawingContext::DrawingContext()
    : fData(std::make_unique<DrawingContextData>()) {
    fData->layout->SetTruncate(kTruncateNone);
    fData->layout->SetWrap(kWrapNone);
    fData->layout->SetColor({0, 0, 0, 1});
    fData->layout->SetFont(kFont1, 10);
}

DrawingContext::~DrawingContext() = default;

void DrawingContext::SetDrawEventContextInfo(CGContext* context, float alpha) {
    fData->context = context;
    fData->baseAlpha = alpha;
}

/// The context of the draw event. The fault of having none is known by one place, whichever
/// operation it was.
CGContext& DrawingContext::LiveContext() const {
    if (!fData->context) {
        std::fputs("Attempt to draw outside of Draw event", stdout);
        FailOSError(-603, "Source/UI/DrawingContextMacCocoa", 45);
    }
    return *fData->context;
}

void DrawingContext::SetAlpha(float alpha) {
    CGContext& context = LiveContext();
    fData->alpha = alpha * fData->baseAlpha;
    context.SetAlpha(fData->alpha);
}

void DrawingContext::SetupFont(FontID family, unsigned int size, const RGBAColor& color) {
    fData->layout->SetColor(color);
    fData->layout->SetFont(family, size);
}

void DrawingContext::SetTruncate(TextTruncate truncate) {
    fData->layout->SetTruncate(truncate);
}

float DrawingContext::StringWidth(const UString& text) {
    TextLayout& layout = *fData->layout;
    layout.SetAlignment(kTextAlignLeft);
    layout.SetLineLength(10000.0F);
    layout.SetText(text);
    return layout.Width();
}

void DrawingContext::DrawString(const UString& text, Rect rect, TextAlignment alignment) {
    CGContext& context = LiveContext();
    // Written so that what is not a number draws nothing either.
    if (text.empty() || !(rect.width > 0) || !(rect.height > 0))
        return;
    TextLayout& layout = *fData->layout;
    layout.SetAlignment(alignment);
    layout.SetText(text);
    // The text space of the rectangle begins at its lower edge.
    const double lowerEdge = static_cast<double>(rect.y) + rect.height;
    const double ascent = layout.GetAscent();
    const double baseline = std::floor(lowerEdge - (rect.height - ascent) * 0.5) - 1.0;
    const TranslatedState state(context, rect.x, baseline);
    layout.SetLineLength(rect.width);
    layout.DrawLayout(&context);
}

void DrawingContext::DrawTextLayout(TextLayout& layout, const Point& start) {
    CGContext& context = LiveContext();
    const TranslatedState state(context, start.x, start.y);
    layout.DrawLayout(&context);
}

void DrawingContext::FrameRect(const Rect& rect, float width, const RGBAColor& color) {
    CGContext& context = LiveContext();
    context.SetRGBStrokeColor(color.red, color.green, color.blue, color.alpha);
    context.StrokeRectWithWidth(Normalised(rect), width);
}

void DrawingContext::FillRect(const Rect& rect, const RGBAColor& color) {
    CGContext& context = LiveContext();
    context.SetRGBFillColor(color.red, color.green, color.blue, color.alpha);
    context.FillRect(Normalised(rect));
}

void DrawingContext::StrokePath(Path& path, float width, RGBAColor color, AntiAliasMode) {
    CGContext& context = LiveContext();
    context.SetLineWidth(width);
    context.SetRGBStrokeColor(color.red, color.green, color.blue, color.alpha);
    context.AddPath(path.GetCGPath());
    context.StrokePath();
}

void DrawingContext::FillPath(Path& path, const RGBAColor& color) {
    CGContext& context = LiveContext();
    context.SetRGBFillColor(color.red, color.green, color.blue, color.alpha);
    context.AddPath(path.GetCGPath());
    context.FillPath();
}

} // namespace Kestrin
