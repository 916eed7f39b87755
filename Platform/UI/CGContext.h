#pragma once

#include "Platform/UI/CGGeometry.h"

#include <memory>
#include <span>

class CGPath;

/// A surface that is drawn on: a view's during one draw event, or a bitmap's. Coordinates are
/// points with y growing downward. Colour components run from 0 to 1 and are clamped to that.
class CGContext {
public:
    /// What the platform keeps; for the platform's own files.
    struct Data;
    explicit CGContext(std::unique_ptr<Data> data);
    ~CGContext();
    CGContext(const CGContext&) = delete;
    CGContext& operator=(const CGContext&) = delete;

    // Graphics state: alpha, colours, line attributes and coordinates.

    void SaveGState();
    /// Brings back the state of the last save that was not restored yet; without one, does nothing.
    void RestoreGState();
    void TranslateCTM(double tx, double ty);
    /// The opacity that everything drawn is multiplied with.
    void SetAlpha(double alpha);
    void SetRGBFillColor(double red, double green, double blue, double alpha);
    void SetRGBStrokeColor(double red, double green, double blue, double alpha);
    /// Lines have no gaps and end flush with their last point; one of width 0 or less paints
    /// nothing.
    void SetLineWidth(double width);

    // Drawing. The extents of rectangles are not negative.

    void FillRect(CGRect rect);
    /// Strokes the rectangle's outline, half of the line on either side of it, and leaves the line
    /// width as it was.
    void StrokeRectWithWidth(CGRect rect, double width);
    /// Strokes from the first point to the second, from the third to the fourth and so on.
    void StrokeLineSegments(std::span<const CGPoint> points);
    /// Appends to the path that the next stroke or fill draws and uses up.
    void AddPath(const CGPath& path);
    void StrokePath();
    /// Fills by the non-zero winding rule.
    void FillPath();
    /// Hands what was drawn so far to the surface.
    void Synchronize();

    Data& GetData() { return *fData; }

private:
    std::unique_ptr<Data> fData;
};
