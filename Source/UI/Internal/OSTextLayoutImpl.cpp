#include "UI/Internal/OSTextLayoutImpl.h"

#include "Diagnostics/Failure.h"
#include "UI/Internal/FontNames.h"
#include "UI/Internal/TextHandOver.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace Kestrin {

namespace {

constexpr char16_t kEllipsis = u'\u2026';

} // namespace

TextLayout::~TextLayout() = default;

std::unique_ptr<TextLayout> TextLayout::Create() {
    return std::make_unique<OSTextLayoutImpl>(NativeTextSystem::Shared());
}

OSTextLayoutImpl::OSTextLayoutImpl(NativeTextSystem& system)
    : fSystem(system) {}

OSTextLayoutImpl::~OSTextLayoutImpl() = default;

// Setters

void OSTextLayoutImpl::SetText(const UString& text) {
    fText = text;
    fLayoutDirty = true;
}

void OSTextLayoutImpl::SetFont(FontID family, unsigned int size) {
    SetFontFamily(family);
    SetSize(size);
}

void OSTextLayoutImpl::ClearStyle() {
    fStyle = Style();
    fMetrics = Metrics();
    fStyleDirty = true;
}

OSTextLayoutImpl::AlignmentCode OSTextLayoutImpl::CodeOf(TextAlignment alignment) {
    switch (alignment) {
    case kTextAlignDefault:
        return kNaturalCode;
    case kTextAlignLeft:
        return kLeftCode;
    case kTextAlignCenter:
        return kCenterCode;
    case kTextAlignRight:
        return kRightCode;
    }
    Log("Unknown alignment type.");
    return kNaturalCode;
}

std::unique_ptr<TextLayout> OSTextLayoutImpl::Clone() const {
    auto clone = std::make_unique<OSTextLayoutImpl>(fSystem);
    clone->fStyle = fStyle;
    clone->fText = fText;
    clone->fMetrics = fMetrics;
    return clone;
}

// Measures

float OSTextLayoutImpl::LineHeight() {
    Update();
    return static_cast<float>(fMetrics.ascent + fMetrics.descent + fMetrics.leading);
}

float OSTextLayoutImpl::Height() {
    Update();
    return static_cast<float>(
        static_cast<double>(LineHeight()) * static_cast<double>(fLines.size()) - fMetrics.leading);
}

// Layout

void OSTextLayoutImpl::Update() {
    if (fStyleDirty)
        UpdateStyle();
    if (fLayoutDirty)
        UpdateLayout();
}

void OSTextLayoutImpl::UpdateStyle() {
    fAttributes.font = fSystem.CreateFont(HandOver(FontName(fStyle.family)), fStyle.size,
                                          fStyle.horizontalScale, fStyle.verticalScale);
    fMetrics.ascent = fAttributes.font->GetAscent();
    fMetrics.descent = fAttributes.font->GetDescent();
    fMetrics.xHeight = fAttributes.font->GetXHeight();
    fAttributes.color = {fStyle.color.red, fStyle.color.green, fStyle.color.blue,
                         fStyle.color.alpha};
    fStyleDirty = false;
    fLayoutDirty = true;
}

void OSTextLayoutImpl::UpdateLayout() {
    fStyle.lineBreakMode = CurrentLineBreakMode();
    fAttributes.alignment = fStyle.alignment;
    fAttributes.lineBreakMode = fStyle.lineBreakMode;
    fAttributes.lineSpacing = fStyle.lineSpacing;
    const auto typesetter = fSystem.CreateTypesetter(StandardText(fText), fAttributes);
    const auto token =
        fSystem.CreateTypesetter(std::u16string(1, kEllipsis), fAttributes)->CreateLine(0, 1);
    LayOutLines(*typesetter, *token);
    fLayoutDirty = false;
}

OSTextLayoutImpl::LineBreakCode OSTextLayoutImpl::CurrentLineBreakMode() const {
    if (fStyle.wrap == kWrapWord)
        return kWordWrappingCode;
    if (fStyle.wrap != kWrapNone) {
        Log("Unknown wrap type.");
        return kClippingCode;
    }
    switch (fStyle.truncate) {
    case kTruncateNone:
        return kClippingCode;
    case kTruncateHead:
        return kTruncateHeadCode;
    case kTruncateMiddle:
        return kTruncateMiddleCode;
    case kTruncateTail:
        return kTruncateTailCode;
    }
    Log("Unknown truncation type.");
    return kClippingCode;
}

double OSTextLayoutImpl::FlushFactor() const {
    constexpr double kFactors[] = {0.0, 1.0, 0.5, 0.0, 0.0};
    if (fStyle.alignment < std::size(kFactors))
        return kFactors[fStyle.alignment];
    Log("Unknown text alignment type.");
    return 0;
}

void OSTextLayoutImpl::LayOutLines(const NativeTypesetter& typesetter,
                                   const NativeTextLine& token) {
    fLines.clear();
    fStrokeWidth = std::floor(fStyle.size / 20) + 1;
    fSegments.clear();
    fMetrics.width = 0;
    if (fText.empty())
        return;
    if (fStyle.wrap == kWrapNone)
        LayOutSingle(typesetter, token, FlushFactor());
    else
        LayOutWrapped(typesetter, FlushFactor());
}

void OSTextLayoutImpl::LayOutWrapped(const NativeTypesetter& typesetter, double flushFactor) {
    double y = 0;
    for (std::size_t start = 0; start < fText.length();) {
        const std::size_t count = typesetter.SuggestLineBreak(start, fStyle.lineLength);
        auto line = typesetter.CreateLine(start, count);
        const NativeTextLine::Bounds bounds = TakeBounds(*line);
        fMetrics.width = std::max(fMetrics.width, bounds.width);
        AppendLine(std::move(line), flushFactor, y);
        y += bounds.ascent + bounds.descent + bounds.leading;
        start += count;
    }
}

void OSTextLayoutImpl::LayOutSingle(const NativeTypesetter& typesetter, const NativeTextLine& token,
                                    double flushFactor) {
    auto line = Truncated(typesetter.CreateLine(0, fText.length()), token);
    fMetrics.width = TakeBounds(*line).width;
    AppendLine(std::move(line), flushFactor, 0);
}

std::unique_ptr<NativeTextLine> OSTextLayoutImpl::Truncated(std::unique_ptr<NativeTextLine> line,
                                                            const NativeTextLine& token) const {
    if (fStyle.truncate == kTruncateNone)
        return line;
    NativeTruncation where = NativeTruncation::kStart;
    if (fStyle.truncate == kTruncateMiddle)
        where = NativeTruncation::kMiddle;
    else if (fStyle.truncate == kTruncateTail)
        where = NativeTruncation::kEnd;
    else if (fStyle.truncate != kTruncateHead)
        Log("Unknown truncation type.");
    auto truncated = line->CreateTruncatedLine(fStyle.lineLength, where, token);
    return truncated ? std::move(truncated) : std::move(line);
}

NativeTextLine::Bounds OSTextLayoutImpl::TakeBounds(const NativeTextLine& line) {
    const NativeTextLine::Bounds bounds = line.GetTypographicBounds();
    fMetrics.ascent = bounds.ascent;
    fMetrics.descent = bounds.descent;
    fMetrics.leading = bounds.leading;
    return bounds;
}

void OSTextLayoutImpl::AppendLine(std::unique_ptr<NativeTextLine> line, double flushFactor,
                                  double y) {
    const double x = line->GetPenOffsetForFlush(flushFactor, fStyle.lineLength);
    fLines.push_back({std::move(line), {x, y}});
}

// Drawing

void OSTextLayoutImpl::DrawLayout(CGContext* context) {
    Update();
    if (fText.empty() || !context)
        return;
    context->SaveGState();
    StrokeSegments(*context);
    for (const Line& line : fLines)
        line.line->Draw(*context, line.origin);
    context->RestoreGState();
}

void OSTextLayoutImpl::StrokeSegments(CGContext& context) const {
    if (fSegments.empty())
        return;
    context.SetLineWidth(fStrokeWidth);
    context.StrokeLineSegments(fSegments);
}

} // namespace Kestrin
