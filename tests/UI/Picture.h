#pragma once

#include "Platform/UI/CGBitmapContext.h"

#include <algorithm>

namespace Kestrin {

/// Where something was drawn on a picture: its first and its last column and row. Empty when
/// `right` is below `left`.
struct Ink {
    int left = 1 << 20;
    int top = 1 << 20;
    int right = -1;
    int bottom = -1;

    double MiddleX() const { return (left + right + 1) / 2.0; }
    double MiddleY() const { return (top + bottom + 1) / 2.0; }
};

/// What surrounds the pixels that `isInk` holds for.
template <typename IsInk>
Ink InkWithin(int width, int height, IsInk isInk) {
    Ink ink;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (isInk(x, y))
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x), y};
        }
    }
    return ink;
}

/// What surrounds the pixels that are not fully transparent.
inline Ink InkOf(const CGBitmapContext& picture) {
    return InkWithin(picture.PixelWidth(), picture.PixelHeight(),
                     [&](int x, int y) { return picture.PixelAt(x, y).alpha >= 16; });
}

} // namespace Kestrin
