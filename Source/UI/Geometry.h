#pragma once

namespace Kestrin {

// Geometry of views, in points. x grows to the right, y grows downward.

struct Point {
    float x = 0;
    float y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    float width = 0;
    float height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

/// A rectangle by its top left corner and its extent. Extents may be negative where an operation
/// says what that means.
struct Rect {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;

    friend bool operator==(const Rect&, const Rect&) = default;
};

/// Whether the point lies in a rectangle of positive extent, edges included.
constexpr bool Contains(const Rect& rect, const Point& point) {
    return rect.width > 0 && rect.height > 0 && point.x >= rect.x &&
           point.x <= rect.x + rect.width && point.y >= rect.y && point.y <= rect.y + rect.height;
}

/// `rect` with each edge moved inward by `distance`.
constexpr Rect Inset(const Rect& rect, float distance) {
    return {rect.x + distance, rect.y + distance, rect.width - 2 * distance,
            rect.height - 2 * distance};
}

} // namespace Kestrin
