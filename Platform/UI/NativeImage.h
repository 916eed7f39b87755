#pragma once

#include "Platform/UI/CGGeometry.h"

#include <memory>
#include <span>

namespace Kestrin {

/// A picture of the platform.
class NativeImage {
public:
    struct Data;

    /// From the bytes of a PNG file; null where they are none.
    static std::unique_ptr<NativeImage> FromPng(std::span<const unsigned char> bytes);

    explicit NativeImage(std::unique_ptr<Data> data);
    ~NativeImage();
    NativeImage(const NativeImage&) = delete;
    NativeImage& operator=(const NativeImage&) = delete;

    /// In pixels.
    CGSize Size() const;

private:
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
