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
};

/// What surrounds the pixels that are not fully transparent.
inline Ink InkOf(const CGBitmapContext& picture) {
    Ink ink;
    for (int y = 0; y < picture.PixelHeight(); ++y) {
        for (int x = 0; x < picture.PixelWidth(); ++x) {
            if (picture.PixelAt(x, y).alpha >= 16)
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x), y};
        }
    }
    return ink;
}

} // namespace Kestrin
