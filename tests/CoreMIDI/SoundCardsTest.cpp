#include "Platform/CoreMIDI/SoundCards.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

void Write(const std::filesystem::path& file, const char* text) {
    std::ofstream(file) << text;
}

TEST(SoundCards, ReadTheUsbDeviceAboveTheInterface) {
    const TemporaryFolder folder;
    const auto device = folder / "devices/platform/dummy_hcd.0/usb1/1-1/1-1.4";
    std::filesystem::create_directories(device / "1-1.4:1.0");
    Write(device / "idVendor", "0a73\n");
    Write(device / "idProduct", "0006\n");
    Write(device / "manufacturer", "LOUD Technologies, Inc.\n");
    Write(device / "product", "  MCU Trailing   \n");
    Write(device / "devpath", "1.4\n");
    std::filesystem::create_directory(device / "serial"); // opens, but reading it fails
    const auto unit = UsbUnitAbove(device / "1-1.4:1.0");
    ASSERT_TRUE(unit);
    EXPECT_EQ(unit->vendorID + ":" + unit->productID, "0a73:0006");
    EXPECT_EQ(unit->manufacturer, "LOUD Technologies, Inc.");
    EXPECT_EQ(unit->product, "  MCU Trailing   ");
    EXPECT_EQ(unit->serial, "");
    EXPECT_EQ(unit->path, "dummy_hcd.0-1.4");
    EXPECT_FALSE(UsbUnitAbove(folder / "devices/platform"));
    EXPECT_FALSE(UsbUnitAbove("/sys/devices/pci0000:00/0000:00:1f.3"));
    EXPECT_FALSE(UsbUnitAbove({}));
}

TEST(SoundCards, AreNotTakenForTheHubWhenTheirOwnFilesAreGone) {
    const TemporaryFolder folder;
    const auto hub = folder / "devices/platform/dummy_hcd.0/usb1";
    std::filesystem::create_directories(hub / "1-1/1-1:1.0");
    Write(hub / "idVendor", "1d6b\n");
    const auto unit = UsbUnitAbove(hub / "1-1/1-1:1.0");
    EXPECT_TRUE(!unit || unit->vendorID.empty());
}

TEST(SoundCards, AreLeftOutWhenTheyAreGone) {
    EXPECT_FALSE(ReadSoundCard(31));
}

} // namespace
