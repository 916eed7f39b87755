#pragma once

#include "Platform/UI/CGContext.h"

#include <cstdint>

namespace Kestrin {

/// A picture in memory with a context that draws on it, for drawing without a window.
class CGBitmapContext {
public:
    /// One pixel, its components from 0 to 255, colours not multiplied with alpha.
    struct Pixel {
        std::uint8_t red, green, blue, alpha;
        bool operator==(const Pixel&) const = default;
    };

    /// A picture of `width` by `height` points with `scale` pixels to the point, transparent at
    /// first.
    CGBitmapContext(double width, double height, double scale = 1.0);
    ~CGBitmapContext();

    /// The context; its coordinates are points from the picture's upper left corner.
    CGContext& Context();

    int PixelWidth() const;
    int PixelHeight() const;
    /// The pixel in column `x` and row `y`; all zero outside the picture.
    Pixel PixelAt(int x, int y) const;

private:
    struct Data;
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
