#pragma once

#include "UI/Geometry.h"

/// Whether the point lies in a rectangle of positive extent, edges included.
inline bool Contains(const Kestrin::Rect& rect, const Kestrin::Point& point) {
    return rect.width > 0 && rect.height > 0 && point.x >= rect.x &&
           point.x <= rect.x + rect.width && point.y >= rect.y && point.y <= rect.y + rect.height;
}
