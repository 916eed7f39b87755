#pragma once

#include "Platform/UI/CGGeometry.h"

#include <QRectF>

namespace Kestrin {

// Geometry to and from the toolkit. Nothing else converts it.

inline QPointF ToQt(CGPoint point) {
    return {point.x, point.y};
}

inline QRectF ToQt(CGRect rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

inline CGPoint FromQt(QPointF point) {
    return {point.x(), point.y()};
}

inline CGRect FromQt(QRectF rect) {
    return {FromQt(rect.topLeft()), {rect.width(), rect.height()}};
}

} // namespace Kestrin
