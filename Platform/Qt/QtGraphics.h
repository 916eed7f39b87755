#pragma once

#include "Platform/UI/CGContext.h"
#include "Platform/UI/CGPath.h"

#include <QPainter>
#include <QPainterPath>
#include <vector>

struct CGPath::Data {
    QPainterPath path;
    /// The index of the element that began the current subpath.
    int subpathStart = 0;
};

struct CGContext::Data {
    explicit Data(QPainter& painterToUse)
        : painter(painterToUse) {}

    /// All of a painter's state that a context can change. Kept here rather than by the painter,
    /// whose own saving costs as much as drawing a word.
    struct State {
        QTransform transform;
        QPen pen;
        QBrush brush;
        double opacity;
    };

    QPainter& painter;
    QPainterPath path;
    std::vector<State> savedStates;
};

namespace Kestrin {

/// A context that draws with `painter`, which outlives it and is set up for it.
CGContext ContextOver(QPainter& painter);

/// The colour of those components, each brought into the range from 0 to 1.
QColor ColorOf(double red, double green, double blue, double alpha);

} // namespace Kestrin
