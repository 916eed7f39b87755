#include "UI/PngImage.h"

#include "Platform/UI/NativeImage.h"

namespace Kestrin {

PngImage::PngImage(const std::vector<unsigned char>& bytes)
    : fImage(NativeImage::FromPng(bytes)) {}

PngImage::~PngImage() = default;

const NativeImage* GetNativeImage(const PngImage* image) {
    return image ? image->fImage.get() : nullptr;
}

} // namespace Kestrin
