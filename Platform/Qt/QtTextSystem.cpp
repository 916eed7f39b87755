#include "Platform/Qt/QtGraphics.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QtTextLine.h"
#include "Platform/UI/NativeApplication.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <utility>

namespace Kestrin {

namespace {

bool IsLineEnd(QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

/// `text` with each line end as the toolkit's own and other controls as blanks, unit for unit.
QString WithToolkitLineEnds(QString text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool beforeLineFeed = text.at(i) == u'\r' && text.mid(i + 1, 1) == u"\n";
        if (beforeLineFeed)
            text[i] = QChar(u'\u200B');
        else if (IsLineEnd(text.at(i)))
            text[i] = QChar::LineSeparator;
        else if (BreaksLine(text.at(i)))
            text[i] = QChar::Space;
    }
    return text;
}

/// The text of one line: line ends at its end go, others and controls become blanks.
QString LineText(QString text) {
    while (!text.isEmpty() && IsLineEnd(text.back()))
        text.chop(1);
    if (std::any_of(text.cbegin(), text.cend(), BreaksLine))
        std::replace_if(text.begin(), text.end(), BreaksLine, QChar(u' '));
    return text;
}

/// Breaks a text into lines one after the other, so that a paragraph is shaped once.
class LineBreaker {
public:
    LineBreaker(const QString& text, const QtTextStyle& style)
        : fLayout(WithToolkitLineEnds(text), style.font->Font()) {
        QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        option.setTextDirection(style.direction);
        fLayout.setTextOption(option);
        fLayout.beginLayout();
    }

    std::size_t Next() const { return fNext; }

    /// The length of the line from Next() on, which then moves behind it.
    std::size_t Break(double width) {
        constexpr double kWidest = 1 << 20;
        QTextLine line = fLayout.createLine();
        qsizetype count = 0;
        if (line.isValid()) {
            line.setLineWidth(width > 0 ? std::min(width, kWidest) : 0.0);
            count = line.textLength();
        }
        if (count <= 0)
            count = OneCharacter();
        fNext += static_cast<std::size_t>(count);
        return static_cast<std::size_t>(count);
    }

private:
    qsizetype OneCharacter() const {
        const auto start = static_cast<qsizetype>(fNext);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, fLayout.text());
        finder.setPosition(start);
        return std::max<qsizetype>(1, finder.toNextBoundary() - start);
    }

    QTextLayout fLayout;
    std::size_t fNext = 0;
};

class QtTypesetter final : public NativeTypesetter {
public:
    QtTypesetter(QString text, QtTextStyle style)
        : fText(std::move(text))
        , fStyle(std::move(style)) {}

    std::size_t SuggestLineBreak(std::size_t start, double width) const override {
        if (!fBreaker || fBreakerStart + fBreaker->Next() != start) {
            fBreaker =
                std::make_unique<LineBreaker>(fText.mid(static_cast<qsizetype>(start)), fStyle);
            fBreakerStart = start;
        }
        return fBreaker->Break(width / fStyle.font->ScaleX());
    }

    std::unique_ptr<NativeTextLine> CreateLine(std::size_t start,
                                               std::size_t count) const override {
        QString text = fText.mid(static_cast<qsizetype>(start), static_cast<qsizetype>(count));
        return std::make_unique<QtTextLine>(LineText(std::move(text)), fStyle);
    }

private:
    QString fText;
    QtTextStyle fStyle;
    mutable std::unique_ptr<LineBreaker> fBreaker;
    mutable std::size_t fBreakerStart = 0;
};

class QtTextSystem final : public NativeTextSystem {
public:
    std::shared_ptr<const NativeFont> CreateFont(const std::string& family, double size,
                                                 double horizontalScale,
                                                 double verticalScale) override {
        NativeApplication::Shared();
        return std::make_shared<QtNativeFont>(family, size, horizontalScale, verticalScale);
    }

    std::unique_ptr<NativeTypesetter> CreateTypesetter(std::u16string text,
                                                       const NativeTextStyle& style) override {
        QString content = ToQString(text);
        const NativeTextStyle::Color& color = style.color;
        QtTextStyle own{std::static_pointer_cast<const QtNativeFont>(style.font),
                        ColorOf(color.red, color.green, color.blue, color.alpha), style.lineSpacing,
                        content.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight};
        return std::make_unique<QtTypesetter>(std::move(content), std::move(own));
    }
};

} // namespace

NativeTextSystem& NativeTextSystem::Shared() {
    static QtTextSystem system;
    return system;
}

} // namespace Kestrin
