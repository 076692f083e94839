// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/UsbBus.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

using namespace orv::aravis;

namespace fs = std::filesystem;

/// A USB tree as the kernel shows it, in a temporary folder.
class UsbTree : public testing::Test {
protected:
    UsbTree() { fs::create_directories(m_root / "bus/usb/devices"); }
    ~UsbTree() override { fs::remove_all(m_root); }

    void add(const std::string& path, const std::string& devpath, const std::string& serial) {
        const fs::path folder = m_root / "devices" / path;
        fs::create_directories(folder);
        const auto write = [&](const char* name, const std::string& text) {
            std::ofstream(folder / name) << text << '\n';
        };
        write("busnum", "2");
        write("devnum", "7");
        write("devpath", devpath);
        write("serial", serial);
        write("manufacturer", "Maker");
        write("product", "Camera");
        write("speed", "5000");
        fs::create_directory_symlink(folder, m_root / "bus/usb/devices" / folder.filename());
    }

    const fs::path m_root =
        fs::path(testing::TempDir()) / ("usb-tree-" + std::to_string(::getpid()));
};

TEST_F(UsbTree, tellsPlaceAndOwnerOfADevice) {
    add("pci0000:00/0000:00:1c.4/0000:0a:00.1/usb2/2-1/2-1.4", "1.4", "S1");
    add("pci0001:00/0001:00:00.0/0001:01:00.0/usb5/5-1", "1", "S0");
    add("platform/soc/usb3/3-2", "2", "S2");
    const auto devices = usbDevices(m_root);
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_EQ(devices[0].serialNumber, "S1");
    EXPECT_EQ(devices[0].controller, "10-0-1") << "the bridge above it is not the controller";
    EXPECT_EQ(devices[0].location(), "::2/1/4");
    EXPECT_EQ(devices[0].linkSpeed, 5'000'000'000);
    EXPECT_EQ(devices[1].controller, "257-0-0") << "of another PCI domain";
    EXPECT_EQ(devices[2].controller, "bus2");

    EXPECT_FALSE(devices[0].isClaimed());
    const fs::path interface = devices[0].folder / "2-1.4:1.0";
    fs::create_directories(interface);
    fs::create_directories(m_root / "bus/usb/drivers/usbfs");
    fs::create_directory_symlink(m_root / "bus/usb/drivers/usbfs", interface / "driver");
    EXPECT_TRUE(devices[0].isClaimed());

    EXPECT_TRUE(devices[0].isPresent());
    fs::remove_all(devices[0].folder);
    EXPECT_FALSE(devices[0].isPresent());
    std::ofstream(devices[1].folder / "devnum") << "8\n";
    EXPECT_FALSE(devices[1].isPresent()) << "it was pulled and plugged in again";
}

TEST_F(UsbTree, isEmptyOnAHostWithoutUsb) {
    EXPECT_TRUE(usbDevices(m_root / "nothing").empty());
}

} // namespace
