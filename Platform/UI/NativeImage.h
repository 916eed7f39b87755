#pragma once

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

private:
    std::unique_ptr<Data> fData;
};

} // namespace Kestrin
