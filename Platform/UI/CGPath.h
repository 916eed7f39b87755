#pragma once

#include "Platform/UI/CGGeometry.h"

#include <memory>

/// A path of straight segments and circular arcs, in the coordinates of the context that draws it.
/// Segments that have no current point to start from are ignored, as are values that are not
/// finite.
class CGPath {
public:
    CGPath();
    ~CGPath();
    CGPath(const CGPath&) = delete;
    CGPath& operator=(const CGPath&) = delete;

    /// Starts a new subpath.
    void MoveToPoint(double x, double y);
    void AddLineToPoint(double x, double y);

    /// Adds the arc that runs from `startAngle` to `endAngle` (radians; an angle a stands for the
    /// point centre + radius × (cos a, sin a)), by falling angles when `clockwise`. A straight
    /// segment leads to its start from the current point; without a current point the arc begins a
    /// subpath.
    void AddArc(CGPoint centre, double radius, double startAngle, double endAngle, bool clockwise);

    /// Closes the current subpath; what is added next starts at the point where that began.
    void CloseSubpath();

    /// The smallest rectangle around all points, control points of curves included; all zero for an
    /// empty path.
    CGRect GetBoundingBox() const;

    /// What the platform keeps; for the platform's own files.
    struct Data;
    const Data& GetData() const { return *fData; }

private:
    std::unique_ptr<Data> fData;
};
