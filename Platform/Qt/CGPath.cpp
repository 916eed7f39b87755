#include "Platform/UI/CGPath.h"

#include "Platform/Qt/QtGeometry.h"
#include "Platform/Qt/QtGraphics.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
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

/// Whether two points are meant to be one. A segment between them would have any direction, which
/// shows as a spike where it is stroked.
bool Meet(QPointF a, QPointF b) {
    constexpr double kTolerance = 1e-3;
    return std::abs(a.x() - b.x()) < kTolerance && std::abs(a.y() - b.y()) < kTolerance;
}

QPointF OnCircle(CGPoint centre, double radius, double angle) {
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

/// Adds the arc from the path's current point, in curves of a quarter turn at most.
void AppendArc(QPainterPath& path, CGPoint centre, double radius, double start, double sweep) {
    // Angles come as floats: what is hardly above a number of quarters is that number.
    constexpr double kTolerance = 1e-6;
    const int pieces =
        std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (kFullTurn / 4) - kTolerance)));
    const double step = sweep / pieces;
    const double reach = 4.0 / 3.0 * std::tan(step / 4) * radius;
    for (int piece = 0; piece < pieces; ++piece) {
        const double from = start + piece * step;
        const double to = from + step;
        const QPointF leaving(-std::sin(from) * reach, std::cos(from) * reach);
        const QPointF arriving(-std::sin(to) * reach, std::cos(to) * reach);
        path.cubicTo(OnCircle(centre, radius, from) + leaving,
                     OnCircle(centre, radius, to) - arriving, OnCircle(centre, radius, to));
    }
}

} // namespace

CGPath::CGPath()
    : fData(std::make_unique<Data>()) {}

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
    const QPointF start = OnCircle(centre, radius, startAngle);
    if (fData->path.elementCount() == 0)
        MoveToPoint(start.x(), start.y());
    else if (!Meet(fData->path.currentPosition(), start))
        fData->path.lineTo(start);
    AppendArc(fData->path, centre, radius, startAngle, SweepOf(startAngle, endAngle, clockwise));
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
    return Kestrin::FromQt(fData->path.controlPointRect());
}
