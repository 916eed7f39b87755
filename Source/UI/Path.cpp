#include "UI/Path.h"

#include "UI/Internal/NativeGeometry.h"

#include <cmath>
#include <limits>

namespace Kestrin {

namespace {

/// The integer part of value + 0.5; the smallest integer for what fits none.
int Rounded(float value) {
    const double raised = static_cast<double>(value) + 0.5;
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    if (raised > kLowest - 1 && raised < kHighest + 1)
        return static_cast<int>(raised);
    return std::numeric_limits<int>::min();
}

} // namespace

void Path::CreateSubpath(float x, float y) {
    fPath.MoveToPoint(x, y);
    fLastX = Rounded(x);
    fLastY = Rounded(y);
}

void Path::AddLine(float x, float y) {
    if (std::isunordered(x, y))
        return;
    const int roundedX = Rounded(x);
    const int roundedY = Rounded(y);
    if (roundedX == fLastX && roundedY == fLastY)
        return;
    fLastX = roundedX;
    fLastY = roundedY;
    fPath.AddLineToPoint(x, y);
}

void Path::AddArc(float radius, const Point& centre, float startAngle, float endAngle) {
    fPath.AddArc(ToNative(centre), radius, startAngle, endAngle, startAngle > endAngle);
}

void Path::CloseSubpath() {
    fPath.CloseSubpath();
}

Rect Path::GetBounds() const {
    return FromNative(fPath.GetBoundingBox());
}

} // namespace Kestrin
