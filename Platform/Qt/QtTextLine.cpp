#include "Platform/Qt/QtTextLine.h"

#include "Platform/Qt/QtFonts.h"
#include "Platform/Qt/QtGeometry.h"
#include "Platform/Qt/QtGraphics.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrin {

namespace {

constexpr double kDefaultSize = 12;
/// Sizes above are drawn from glyphs of this one.
constexpr double kLargestSize = 1000;

double UsableSize(double size) {
    return size > 0 ? size : kDefaultSize;
}

int WholeSize(double size) {
    return static_cast<int>(std::ceil(std::min(UsableSize(size), kLargestSize)));
}

/// Whether every font has the text's characters, each standing for itself and set from left to
/// right.
bool IsPlain(const QString& text) {
    constexpr char16_t kSoftHyphen = 0xAD;
    constexpr char16_t kBehindLatin = 0x180;
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        const char16_t unit = character.unicode();
        return unit >= 0x20 && unit < kBehindLatin && (unit < 0x7F || unit >= 0xA0) &&
               unit != kSoftHyphen;
    });
}

void LayOut(QTextLayout& layout, Qt::LayoutDirection direction) {
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(direction);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLeadingIncluded(true);
    // Wide enough for any text and narrow enough for the toolkit's numbers.
    line.setLineWidth(1 << 20);
    layout.endLayout();
}

/// Where the characters of `text`, as a person counts them, begin and end.
QList<qsizetype> CharacterBoundaries(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    QList<qsizetype> boundaries{0};
    for (qsizetype next = finder.toNextBoundary(); next >= 0; next = finder.toNextBoundary())
        boundaries.append(next);
    return boundaries;
}

/// `text` without blanks at its end.
QString WithoutTrailingBlanks(const QString& text) {
    qsizetype end = text.size();
    while (end > 0 && text.at(end - 1).isSpace())
        --end;
    return text.left(end);
}

bool CanBeSeen(CGPoint point) {
    constexpr double kFarOut = 1e6;
    return std::abs(point.x) < kFarOut && std::abs(point.y) < kFarOut;
}

} // namespace

QtNativeFont::QtNativeFont(const std::string& family, double size, double horizontalScale,
                           double verticalScale)
    : fFont(FontNamed(family, WholeSize(size)))
    , fMetrics(fFont)
    , fScaleX(horizontalScale * UsableSize(size) / WholeSize(size))
    , fScaleY(verticalScale * UsableSize(size) / WholeSize(size)) {}

double QtNativeFont::GetAscent() const {
    return fMetrics.ascent() * fScaleY;
}

double QtNativeFont::GetDescent() const {
    return fMetrics.descent() * fScaleY;
}

double QtNativeFont::GetXHeight() const {
    return fMetrics.xHeight() * fScaleY;
}

QtTextLine::QtTextLine(QString text, QtTextStyle style)
    : fText(std::move(text))
    , fStyle(std::move(style)) {}

/// The shaped line, in the font's own unscaled pixels.
struct QtTextLine::Shape {
    Shape(const QString& text, const QtTextStyle& style)
        : layout(text, style.font->Font()) {
        LayOut(layout, style.direction);
        line = layout.lineAt(0);
    }

    QTextLayout layout;
    QTextLine line;
    /// Made at the first drawing; measuring does without.
    QList<QGlyphRun> glyphs;
};

const QtTextLine::Shape& QtTextLine::Shaped() const {
    if (!fShape)
        fShape = std::make_shared<Shape>(fText, fStyle);
    return *fShape;
}

const QList<QGlyphRun>& QtTextLine::Glyphs() const {
    Shaped();
    if (fShape->glyphs.isEmpty())
        fShape->glyphs = fShape->layout.glyphRuns();
    return fShape->glyphs;
}

NativeTextLine::Bounds QtTextLine::GetTypographicBounds() const {
    const double scaleX = fStyle.font->ScaleX();
    const double scaleY = fStyle.font->ScaleY();
    if (IsPlain(fText)) {
        const QFontMetricsF& metrics = fStyle.font->Metrics();
        return {metrics.horizontalAdvance(fText) * scaleX, metrics.ascent() * scaleY,
                metrics.descent() * scaleY, metrics.leading() * scaleY + fStyle.lineSpacing};
    }
    const QTextLine& line = Shaped().line;
    return {line.naturalTextWidth() * scaleX, line.ascent() * scaleY, line.descent() * scaleY,
            line.leading() * scaleY + fStyle.lineSpacing};
}

double QtTextLine::WidthOf(const QString& text) const {
    return QtTextLine(text, fStyle).GetTypographicBounds().width;
}

double QtTextLine::GetPenOffsetForFlush(double factor, double width) const {
    if (factor == 0)
        return 0;
    return std::max(0.0, factor * (width - WidthOf(WithoutTrailingBlanks(fText))));
}

QString QtTextLine::Shortened(const QList<qsizetype>& boundaries, qsizetype kept,
                              NativeTruncation where, const QString& token) const {
    const qsizetype last = boundaries.size() - 1;
    const qsizetype head = where == NativeTruncation::kEnd      ? kept
                           : where == NativeTruncation::kMiddle ? (kept + 1) / 2
                                                                : 0;
    return fText.left(boundaries[head]) + token + fText.mid(boundaries[last - (kept - head)]);
}

std::unique_ptr<NativeTextLine> QtTextLine::CreateTruncatedLine(double width,
                                                                NativeTruncation where,
                                                                const NativeTextLine& token) const {
    if (GetTypographicBounds().width <= width)
        return std::make_unique<QtTextLine>(*this);
    const QString& tokenText = static_cast<const QtTextLine&>(token).fText;
    if (WidthOf(tokenText) > width)
        return nullptr;
    const QList<qsizetype> boundaries = CharacterBoundaries(fText);
    qsizetype fitting = 0;
    qsizetype tooMany = boundaries.size() - 1;
    while (tooMany - fitting > 1) {
        const qsizetype middle = (fitting + tooMany) / 2;
        if (WidthOf(Shortened(boundaries, middle, where, tokenText)) <= width)
            fitting = middle;
        else
            tooMany = middle;
    }
    return std::make_unique<QtTextLine>(Shortened(boundaries, fitting, where, tokenText), fStyle);
}

void QtTextLine::Draw(CGContext& context, CGPoint origin) const {
    if (!CanBeSeen(origin))
        return;
    QPainter& painter = context.GetData().painter;
    painter.setPen(fStyle.color);
    QPointF glyphOrigin = ToQt(origin);
    const QTransform before = painter.worldTransform();
    const bool scaled = fStyle.font->ScaleX() != 1 || fStyle.font->ScaleY() != 1;
    if (scaled) {
        painter.translate(glyphOrigin);
        painter.scale(fStyle.font->ScaleX(), fStyle.font->ScaleY());
        glyphOrigin = {};
    }
    glyphOrigin.ry() -= Shaped().line.ascent();
    for (const QGlyphRun& run : Glyphs())
        painter.drawGlyphRun(glyphOrigin, run);
    if (scaled)
        painter.setWorldTransform(before);
}

} // namespace Kestrin
