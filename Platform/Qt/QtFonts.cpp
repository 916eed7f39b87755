#include "Platform/Qt/QtFonts.h"

#include "Platform/Qt/QtText.h"

#include <QFontDatabase>
#include <QStringList>
#include <algorithm>
#include <iterator>
#include <map>

namespace Kestrin {

namespace {

/// A family and the style that it is used in; a style of -1 is the normal one.
struct Typeface {
    QString family;
    int weight = -1;
    int stretch = -1;
    bool italic = false;
};

struct StyleWord {
    const char* word;
    int weight;
    int stretch;
    bool italic;
};

constexpr StyleWord kStyleWords[] = {
    {"Thin", QFont::Thin, -1, false},
    {"ExtraLight", QFont::ExtraLight, -1, false},
    {"UltraLight", QFont::ExtraLight, -1, false},
    {"Light", QFont::Light, -1, false},
    {"Regular", QFont::Normal, -1, false},
    {"Roman", QFont::Normal, -1, false},
    {"Medium", QFont::Medium, -1, false},
    {"SemiBold", QFont::DemiBold, -1, false},
    {"DemiBold", QFont::DemiBold, -1, false},
    {"Bold", QFont::Bold, -1, false},
    {"ExtraBold", QFont::ExtraBold, -1, false},
    {"Heavy", QFont::ExtraBold, -1, false},
    {"Black", QFont::Black, -1, false},
    {"Condensed", -1, QFont::Condensed, false},
    {"Narrow", -1, QFont::Condensed, false},
    {"Expanded", -1, QFont::Expanded, false},
    {"Extended", -1, QFont::Expanded, false},
    {"Italic", -1, -1, true},
    {"Oblique", -1, -1, true},
};

const StyleWord* FindStyleWord(const QString& word) {
    const auto* found =
        std::find_if(std::begin(kStyleWords), std::end(kStyleWords), [&](const StyleWord& style) {
            return word.compare(QLatin1String(style.word), Qt::CaseInsensitive) == 0;
        });
    return found == std::end(kStyleWords) ? nullptr : found;
}

/// Moves the last word of `words` into the style; false where it is none or the only word.
bool TakeStyleWord(QStringList& words, Typeface& typeface) {
    const StyleWord* style = words.size() > 1 ? FindStyleWord(words.last()) : nullptr;
    if (!style)
        return false;
    words.removeLast();
    if (style->weight >= 0)
        typeface.weight = style->weight;
    if (style->stretch >= 0)
        typeface.stretch = style->stretch;
    typeface.italic = typeface.italic || style->italic;
    return true;
}

Typeface TypefaceNamed(const QString& name) {
    QStringList words = name.simplified().split(QLatin1Char(' '));
    Typeface typeface;
    while (!QFontDatabase::hasFamily(words.join(QLatin1Char(' '))) &&
           TakeStyleWord(words, typeface)) {
    }
    typeface.family = words.join(QLatin1Char(' '));
    return typeface;
}

/// Looking a name up goes through all families, so each is kept.
const Typeface& KnownTypeface(const std::string& name) {
    static std::map<std::string, Typeface> known;
    const auto found = known.find(name);
    return found != known.end() ? found->second
                                : known.emplace(name, TypefaceNamed(ToQString(name))).first->second;
}

} // namespace

QFont FontNamed(const std::string& name, int size) {
    const Typeface& typeface = KnownTypeface(name);
    QFont font(typeface.family);
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(size);
    if (typeface.weight >= 0)
        font.setWeight(static_cast<QFont::Weight>(typeface.weight));
    if (typeface.stretch >= 0)
        font.setStretch(typeface.stretch);
    font.setItalic(typeface.italic);
    // Widths so do not depend on the scale of the screen, while lines of glyphs stay sharp.
    font.setHintingPreference(QFont::PreferVerticalHinting);
    return font;
}

} // namespace Kestrin
