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

} // namespace Kestrin
