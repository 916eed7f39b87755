#include "Platform/UI/CGPath.h"

#include "Platform/Qt/QtGraphics.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kFullTurn = 2 * std::numbers::pi;

bool AllFinite(std::initializer_list<double> values) {
    for (double value : values)
        if (!std::isfinite(value))
            return false;
    return true;
}

/// The angle to go from `start` to `end` in the given direction, one turn at most.
double SweepOf(double start, double end, bool clockwise) {
    const double difference = end - start;
    if (std::abs(difference) >= kFullTurn)
        return clockwise ? -kFullTurn : kFullTurn;
    if (clockwise && difference > 0)
        return difference - kFullTurn;
    if (!clockwise && difference < 0)
        return difference + kFullTurn;
    return difference;
}

double Degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

/// Whether two points are meant to be one. A segment between them would have any direction, which
/// shows as a spike where it is stroked.
bool Meet(QPointF a, QPointF b) {
    constexpr double kTolerance = 1e-3;
    return std::abs(a.x() - b.x()) < kTolerance && std::abs(a.y() - b.y()) < kTolerance;
}

QPainterPath ArcOf(CGPoint centre, double radius, double startAngle, double sweep) {
    const QRectF circle(centre.x - radius, centre.y - radius, 2 * radius, 2 * radius);
    QPainterPath arc;
    // The toolkit's angles grow the other way round: upward where y grows downward.
    arc.arcMoveTo(circle, -Degrees(startAngle));
    arc.arcTo(circle, -Degrees(startAngle), -Degrees(sweep));
    return arc;
}

} // namespace

CGPath::CGPath()
    : fData(std::make_unique<Data>()) {
    fData->path.setFillRule(Qt::WindingFill);
}

CGPath::~CGPath() = default;

void CGPath::MoveToPoint(double x, double y) {
    if (!AllFinite({x, y}))
        return;
    fData->path.moveTo(x, y);
    fData->subpathStart = fData->path.elementCount() - 1;
}

void CGPath::AddLineToPoint(double x, double y) {
    if (AllFinite({x, y}) && fData->path.elementCount() > 0)
        fData->path.lineTo(x, y);
}

void CGPath::AddArc(CGPoint centre, double radius, double startAngle, double endAngle,
                    bool clockwise) {
    if (!AllFinite({centre.x, centre.y, radius, startAngle, endAngle}))
        return;
    QPainterPath arc = ArcOf(centre, radius, startAngle, SweepOf(startAngle, endAngle, clockwise));
    const QPointF current = fData->path.currentPosition();
    if (fData->path.elementCount() > 0 && Meet(current, arc.elementAt(0)))
        arc.setElementPositionAt(0, current.x(), current.y());
    fData->path.connectPath(arc);
}

void CGPath::CloseSubpath() {
    QPainterPath& path = fData->path;
    if (path.elementCount() == 0)
        return;
    const QPointF start = path.elementAt(fData->subpathStart);
    if (Meet(path.currentPosition(), start))
        path.setElementPositionAt(path.elementCount() - 1, start.x(), start.y());
    path.closeSubpath();
}

CGRect CGPath::GetBoundingBox() const {
    const QRectF bounds = fData->path.controlPointRect();
    return CGRect{{bounds.x(), bounds.y()}, {bounds.width(), bounds.height()}};
}
