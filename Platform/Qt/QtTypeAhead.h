#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

namespace Kestrin {

/// Finds the item of a list that a person types the beginning of. What is typed without a pause
/// belongs together; the same character again and again goes through the items that begin with it.
class TypeAhead {
public:
    /// The place in `titles` to go to from `current` (-1: none), or -1 to stay. Empty titles are
    /// never gone to.
    int Type(const QString& text, const QStringList& titles, int current);

    /// Whether more text now would join what was typed before.
    bool IsGoingOn() const;

private:
    QString fTyped;
    QElapsedTimer fSinceLast;
};

} // namespace Kestrin
