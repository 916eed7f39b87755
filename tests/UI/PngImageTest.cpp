#include "UI/PngImage.h"

#include "Platform/UI/NativeImage.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

/// Three pixels by two.
constexpr std::string_view
    kPng("\211PNG\15\12\32\12\0\0\0\15IHDR\0\0\0\3\0\0\0\2\10\0\0\0\0\270\379\306\0\0\0\20IDAT"
         "x\332c`dbf`ae\3\0\0F\0\26\237\364g\360\0\0\0\0IEND\256B`\202",
         73);

TEST(PngImage, HoldsThePlatformsImageOrNone) {
    const Kestrin::PngImage image({kPng.begin(), kPng.end()});
    ASSERT_NE(Kestrin::GetNativeImage(&image), nullptr);
    EXPECT_EQ(Kestrin::GetNativeImage(&image)->Size().width, 3);
    EXPECT_EQ(Kestrin::GetNativeImage(&image)->Size().height, 2);
    const Kestrin::PngImage broken({kPng.begin(), kPng.begin() + 20});
    EXPECT_EQ(Kestrin::GetNativeImage(&broken), nullptr);
}

} // namespace
