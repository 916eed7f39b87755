#pragma once

#include "Platform/UI/CGBitmapContext.h"

#include <algorithm>

namespace Kestrin {

/// Where something was drawn on a picture: the pixels that are not fully transparent, as the first
/// and the last column and row. Empty when `right` is below `left`.
struct Ink {
    int left = 1 << 20;
    int top = 1 << 20;
    int right = -1;
    int bottom = -1;

    bool IsEmpty() const { return right < left; }
    double MiddleX() const { return (left + right + 1) / 2.0; }
    double MiddleY() const { return (top + bottom + 1) / 2.0; }
};

inline Ink InkOf(const CGBitmapContext& picture) {
    Ink ink;
    for (int y = 0; y < picture.PixelHeight(); ++y) {
        for (int x = 0; x < picture.PixelWidth(); ++x) {
            if (picture.PixelAt(x, y).alpha < 16)
                continue;
            ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x),
                   std::max(ink.bottom, y)};
        }
    }
    return ink;
}

inline bool SamePicture(const CGBitmapContext& a, const CGBitmapContext& b) {
    for (int y = 0; y < a.PixelHeight(); ++y)
        for (int x = 0; x < a.PixelWidth(); ++x)
            if (a.PixelAt(x, y) != b.PixelAt(x, y))
                return false;
    return a.PixelWidth() == b.PixelWidth() && a.PixelHeight() == b.PixelHeight();
}

} // namespace Kestrin
