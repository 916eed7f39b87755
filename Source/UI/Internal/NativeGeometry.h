#pragma once

#include "UI/Geometry.h"

#include "Platform/UI/CGGeometry.h"

namespace Kestrin {

// Geometry to and from the native objects, which have y growing downward, too. Nothing else
// converts it.

inline CGPoint ToNative(const Point& point) {
    return {point.x, point.y};
}

inline CGSize ToNative(const Size& size) {
    return {size.width, size.height};
}

inline CGRect ToNative(const Rect& rect) {
    return {{rect.x, rect.y}, {rect.width, rect.height}};
}

inline Point FromNative(const CGPoint& point) {
    return {static_cast<float>(point.x), static_cast<float>(point.y)};
}

inline Rect FromNative(const CGRect& rect) {
    return {static_cast<float>(rect.origin.x), static_cast<float>(rect.origin.y),
            static_cast<float>(rect.size.width), static_cast<float>(rect.size.height)};
}

} // namespace Kestrin
