#pragma once

#include "Platform/UI/CGContext.h"
#include "Platform/UI/CGPath.h"

#include <QPainter>
#include <QPainterPath>

struct CGPath::Data {
    QPainterPath path;
    /// The index of the element that began the current subpath.
    int subpathStart = 0;
};

struct CGContext::Data {
    explicit Data(QPainter& painterToUse)
        : painter(painterToUse) {}

    QPainter& painter;
    QPainterPath path;
    int savedStates = 0;
};

namespace Kestrin {

/// A context that draws with `painter`, which outlives it and is set up for it.
CGContext ContextOver(QPainter& painter);

/// The colour of those components, each brought into the range from 0 to 1.
QColor ColorOf(double red, double green, double blue, double alpha);

} // namespace Kestrin
