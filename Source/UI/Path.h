#pragma once

#include "UI/Geometry.h"

#include "Platform/UI/CGPath.h"

namespace Kestrin {

/// A vector path that a DrawingContext fills and strokes, in the coordinates of the view.
class Path {
public:
    Path() = default;
    virtual ~Path() = default;
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;

    /// Starts a new subpath.
    void CreateSubpath(float x, float y);

    /// Adds a straight segment. A point that falls on the same whole-number position as the last
    /// one is dropped, so that a path of dense samples keeps one vertex per pixel at most; so is a
    /// point that is not a number.
    void AddLine(float x, float y);

    /// Adds a circular arc, clockwise when `startAngle` is above `endAngle`; angles in radians. The
    /// dropping of points goes on from the point before it.
    void AddArc(float radius, const Point& centre, float startAngle, float endAngle);

    void CloseSubpath();

    /// The rectangle around all points, control points included.
    Rect GetBounds() const;

    const CGPath& GetCGPath() const { return fPath; }

private:
    CGPath fPath;
    int fLastX = 0;
    int fLastY = 0;
};

} // namespace Kestrin
