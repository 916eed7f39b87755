#pragma once

#include <memory>
#include <vector>

namespace Kestrin {

class NativeImage;

/// One platform image made from the bytes of a PNG file.
class PngImage {
public:
    /// Bytes that are no PNG make an image without a platform image.
    explicit PngImage(const std::vector<unsigned char>& bytes);
    ~PngImage();
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;

private:
    friend const NativeImage* GetNativeImage(const PngImage* image);

    std::unique_ptr<NativeImage> fImage;
};

/// The platform image that `image` holds; null for a null image and where there is none.
const NativeImage* GetNativeImage(const PngImage* image);

} // namespace Kestrin
