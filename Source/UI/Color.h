#pragma once

namespace Kestrin {

/// A colour and its opacity; each component runs from 0.0 to 1.0.
struct RGBAColor {
    float red;
    float green;
    float blue;
    float alpha;

    bool operator==(const RGBAColor&) const = default;
};

} // namespace Kestrin
