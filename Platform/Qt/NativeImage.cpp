#include "Platform/UI/NativeImage.h"

#include <QImage>
#include <utility>

namespace Kestrin {

struct NativeImage::Data {
    QImage image;
};

std::unique_ptr<NativeImage> NativeImage::FromPng(std::span<const unsigned char> bytes) {
    QImage image = QImage::fromData(bytes.data(), static_cast<int>(bytes.size()), "PNG");
    if (image.isNull())
        return nullptr;
    return std::make_unique<NativeImage>(std::make_unique<Data>(Data{std::move(image)}));
}

NativeImage::NativeImage(std::unique_ptr<Data> data)
    : fData(std::move(data)) {}

NativeImage::~NativeImage() = default;

} // namespace Kestrin
