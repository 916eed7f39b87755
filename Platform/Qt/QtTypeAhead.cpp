#include "Platform/Qt/QtTypeAhead.h"

#include <algorithm>

namespace Kestrin {

namespace {

constexpr qint64 kPause = 1000; // milliseconds

bool IsOneCharacterRepeated(const QString& text) {
    return std::all_of(text.begin(), text.end(), [&](QChar c) { return c == text.front(); });
}

/// The first title that begins with `text`, from `start` on and round to before it; -1 for none.
int Find(const QString& text, const QStringList& titles, int start) {
    const int count = static_cast<int>(titles.size());
    for (int i = 0; i < count; ++i) {
        const int candidate = (start + i) % count;
        if (titles[candidate].startsWith(text, Qt::CaseInsensitive))
            return candidate;
    }
    return -1;
}

} // namespace

bool TypeAhead::IsGoingOn() const {
    return fSinceLast.isValid() && !fSinceLast.hasExpired(kPause);
}

int TypeAhead::Type(const QString& text, const QStringList& titles, int current) {
    if (!IsGoingOn())
        fTyped.clear();
    fSinceLast.start();
    fTyped += text;
    const bool isFresh = fTyped == text;
    const int found = Find(fTyped, titles, isFresh ? current + 1 : std::max(current, 0));
    if (found >= 0 || !IsOneCharacterRepeated(fTyped))
        return found;
    return Find(fTyped.left(1), titles, current + 1);
}

} // namespace Kestrin
