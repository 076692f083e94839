// SPDX-License-Identifier: BSD-3-Clause
#include "platform/UsbDevice.h"
#include "platform/PciLocation.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

namespace {

using namespace platform;
namespace fs = std::filesystem;

void add(const FileTree& files, const fs::path& path, const char* ports, const char* serial) {
    const fs::path folder = "devices" / path;
    for (const auto& [name, text] :
         {std::pair("busnum", "2"), std::pair("devnum", "7"), std::pair("devpath", ports),
          std::pair("serial", serial), std::pair("manufacturer", "Maker "),
          std::pair("product", "Camera"), std::pair("speed", "5000")})
        files.write(folder / name, std::string(text) + '\n');
    files.link("bus/usb/devices" / folder.filename(), folder);
}

TEST(UsbDevice, tellsItsPlaceAndWhoHasClaimedIt) {
    const FileTree files;
    EXPECT_TRUE(usbDevices(files.root()).empty()) << "a computer without USB";
    add(files, "pci0000:00/0000:00:1c.4/0000:0a:00.1/usb2/2-1/2-1.4", "1.4", "S1");
    add(files, "pci0001:00/0001:00:00.0/0001:01:00.0/usb5/5-1", "1", "S0");
    add(files, "platform/soc/usb3/3-2", "2", "S2");
    const auto devices = usbDevices(files.root());
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_EQ(devices[0].manufacturer, "Maker");
    EXPECT_EQ(devices[0].product, "Camera");
    EXPECT_EQ(devices[0].serialNumber, "S1");
    EXPECT_EQ(devices[0].controller, "10-0-1") << "the bridge above it is not the controller";
    EXPECT_EQ(devices[0].location(), "::2/1/4");
    EXPECT_EQ(devices[0].linkSpeed, 5'000'000'000);
    EXPECT_EQ(devices[1].controller, "257-0-0") << "of another PCI domain";
    EXPECT_EQ(devices[2].controller, "bus2");

    EXPECT_FALSE(devices[0].isClaimed());
    fs::create_directories(devices[0].folder / "2-1.4:1.0");
    fs::create_directories(files.root() / "bus/usb/drivers/usbfs");
    fs::create_directory_symlink(files.root() / "bus/usb/drivers/usbfs",
                                 devices[0].folder / "2-1.4:1.0/driver");
    EXPECT_TRUE(devices[0].isClaimed());

    EXPECT_TRUE(devices[0].isPresent());
    fs::remove_all(devices[0].folder);
    EXPECT_FALSE(devices[0].isPresent());
    files.write("devices/pci0001:00/0001:00:00.0/0001:01:00.0/usb5/5-1/devnum", "8\n");
    EXPECT_FALSE(devices[1].isPresent()) << "it was pulled and plugged in again";
}

TEST(PciLocation, isReadFromAWholeFolderName) {
    EXPECT_EQ(parsePciLocation("0001:0b:0a.1")->key(), "267-10-1");
    for (const char* name : {"0000:00:14.0:1.0", "pci0000:00", "usb2", "2-1.4", ""})
        EXPECT_FALSE(parsePciLocation(name)) << name;
}

} // namespace
