#include "Platform/CoreMIDI/Live/SoundCards.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace KestrinMIDI;

namespace {

TEST(SoundCards, ReadTheUsbDeviceAboveTheInterfaceAndNotItsHub) {
    const TemporaryFolder folder;
    const auto hub = folder / "devices/platform/dummy_hcd.0/usb1";
    const auto device = hub / "1-1/1-1.4";
    std::filesystem::create_directories(device / "1-1.4:1.0");
    std::ofstream(hub / "idVendor") << "1d6b\n";
    const auto leaving = UsbUnitAbove(device / "1-1.4:1.0");
    EXPECT_TRUE(!leaving || leaving->vendorID.empty()) << "its own files are gone already";

    std::ofstream(device / "idVendor") << "0a73\n";
    std::ofstream(device / "product") << "  MCU Trailing   \n";
    std::ofstream(device / "devpath") << "1.4\n";
    std::filesystem::create_directory(device / "serial"); // opens, but reading it fails
    const auto unit = UsbUnitAbove(device / "1-1.4:1.0");
    ASSERT_TRUE(unit);
    EXPECT_EQ(unit->vendorID, "0a73");
    EXPECT_EQ(unit->product, "  MCU Trailing   ");
    EXPECT_EQ(unit->serial, "");
    EXPECT_EQ(unit->path, "dummy_hcd.0-1.4");
}

} // namespace
