#pragma once

#include "Platform/UI/NativeText.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QList>

namespace Kestrin {

/// A font of whole pixels, and the factors that bring its measures and glyphs to the size asked
/// for.
class QtNativeFont final : public NativeFont {
public:
    QtNativeFont(const std::string& family, double size, double horizontalScale,
                 double verticalScale);

    double GetAscent() const override;
    double GetDescent() const override;
    double GetXHeight() const override;

    const QFont& Font() const { return fFont; }
    const QFontMetricsF& Metrics() const { return fMetrics; }
    double ScaleX() const { return fScaleX; }
    double ScaleY() const { return fScaleY; }

private:
    QFont fFont;
    QFontMetricsF fMetrics;
    double fScaleX;
    double fScaleY;
};

/// What the lines of one text share.
struct QtTextStyle {
    std::shared_ptr<const QtNativeFont> font;
    QColor color;
    double lineSpacing;
    Qt::LayoutDirection direction;
};

/// A line that is shaped at the first need for it: a plain text is measured without.
class QtTextLine final : public NativeTextLine {
public:
    /// `text` holds no line ends.
    QtTextLine(QString text, QtTextStyle style);

    Bounds GetTypographicBounds() const override;
    double GetPenOffsetForFlush(double factor, double width) const override;
    std::unique_ptr<NativeTextLine> CreateTruncatedLine(double width, NativeTruncation where,
                                                        const NativeTextLine& token) const override;
    void Draw(CGContext& context, CGPoint origin) const override;

private:
    struct Shape;

    const Shape& Shaped() const;
    const QList<QGlyphRun>& Glyphs() const;
    double WidthOf(const QString& text) const;
    QString Shortened(const QList<qsizetype>& boundaries, qsizetype kept, NativeTruncation where,
                      const QString& token) const;

    QString fText;
    QtTextStyle fStyle;
    /// Shared by copies; null until it is needed.
    mutable std::shared_ptr<Shape> fShape;
};

} // namespace Kestrin
