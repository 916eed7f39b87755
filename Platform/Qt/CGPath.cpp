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

} // namespace

CGPath::CGPath()
    : fData(std::make_unique<Data>()) {
    fData->path.setFillRule(Qt::WindingFill);
}

CGPath::~CGPath() = default;

void CGPath::MoveToPoint(double x, double y) {
    if (AllFinite({x, y}))
        fData->path.moveTo(x, y);
}

void CGPath::AddLineToPoint(double x, double y) {
    if (AllFinite({x, y}) && fData->path.elementCount() > 0)
        fData->path.lineTo(x, y);
}

void CGPath::AddArc(CGPoint centre, double radius, double startAngle, double endAngle,
                    bool clockwise) {
    if (!AllFinite({centre.x, centre.y, radius, startAngle, endAngle}))
        return;
    const double startX = centre.x + radius * std::cos(startAngle);
    const double startY = centre.y + radius * std::sin(startAngle);
    if (fData->path.elementCount() == 0)
        fData->path.moveTo(startX, startY);
    // The toolkit's angles grow the other way round: upward where y grows downward.
    fData->path.arcTo(centre.x - radius, centre.y - radius, 2 * radius, 2 * radius,
                      -Degrees(startAngle), -Degrees(SweepOf(startAngle, endAngle, clockwise)));
}

void CGPath::CloseSubpath() {
    if (fData->path.elementCount() > 0)
        fData->path.closeSubpath();
}

CGRect CGPath::GetBoundingBox() const {
    const QRectF bounds = fData->path.controlPointRect();
    return CGRect{{bounds.x(), bounds.y()}, {bounds.width(), bounds.height()}};
}
