#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace Kestrin {

// Text to and from the toolkit. Nothing else converts strings.

/// From UTF-8; ill-formed bytes become U+FFFD.
inline QString ToQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// From standard UTF-16, unit by unit.
inline QString ToQString(std::u16string_view utf16) {
    return QString::fromUtf16(utf16.data(), static_cast<qsizetype>(utf16.size()));
}

/// For a caption, which shows an ampersand as the mark of a mnemonic unless it is doubled.
inline QString WithoutMnemonics(QString caption) {
    return caption.replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// For a window's title, in which "[*]" stands for a mark of the toolkit's unless it is doubled.
inline QString AsTitle(QString text) {
    return text.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

/// Whether a character would break a line or tear it apart: in one line it is shown as a blank.
inline bool BreaksLine(QChar character) {
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

/// To UTF-8.
inline std::string ToUtf8(const QString& text) {
    return text.toStdString();
}

/// To UTF-16, unit by unit.
inline std::u16string ToUtf16(const QString& text) {
    return text.toStdU16String();
}

} // namespace Kestrin
