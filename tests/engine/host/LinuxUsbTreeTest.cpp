// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxUsbTree.h"
#include "engine/InterfaceHandlerUSB.h"
#include "platform/UsbDevice.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/EmulatedUsb.h"

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

class LinuxUsbTree : public EmulatedUsb {
protected:
    std::optional<std::uint64_t> speedNow(const std::string& controller) {
        m_handler.rebuild();
        return m_handler.GetSpeed("MRD USB Interface " + controller);
    }

    InterfaceHandlerUSB m_handler;
    const CapturedLog m_log;
};

TEST_F(LinuxUsbTree, readsTheSpeedOfAPort) {
    const std::string root = addHub(addPci("0000:00:14.0"), "usb2", "20000");
    const std::string camera = addCamera(root, "2-3", "480");
    const std::pair<const char*, std::optional<std::uint64_t>> cases[] = {
        {"1.5", 1'500'000},        {"12", 12'000'000},        {"480", 480'000'000},
        {"5000", 5'000'000'000},   {"10000", 10'000'000'000}, {"20000", 20'000'000'000},
        {"unknown", std::nullopt}, {"", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        set(camera, "speed", text);
        EXPECT_EQ(speedNow("0-20-0"), expected) << text;
    }
    EXPECT_EQ(m_log.text(), "");
}

TEST_F(LinuxUsbTree, seesWhatIsPluggedAndUnplugged) {
    const std::string controller = addPci("0000:00:14.0");
    const std::string usb2Ports = addHub(controller, "usb1", "480");
    const std::string usb3Ports = addHub(controller, "usb2", "10000");
    EXPECT_EQ(speedNow("0-20-0"), std::nullopt) << "a controller without devices";
    addInterface(addDevice(usb3Ports, "2-1", "5000", "0002"), "2-1:1.0", "02");
    addDevice(usb3Ports, "2-2", "5000", "");
    EXPECT_EQ(speedNow("0-20-0"), std::nullopt) << "neither is a camera";
    addDevice(usb2Ports, "1-1", "12", "0001");
    EXPECT_EQ(speedNow("0-20-0"), 12'000'000U) << "the maker's, before it shows its interfaces";

    addCamera(usb2Ports, "1-3", "480");
    EXPECT_EQ(speedNow("0-20-0"), 480'000'000U);
    const std::string hub = addHub(usb3Ports, "2-4", "5000");
    EXPECT_EQ(speedNow("0-20-0"), 480'000'000U) << "a hub is no camera";
    const std::string camera = addCamera(hub, "2-4.2", "5000");
    EXPECT_EQ(speedNow("0-20-0"), 5'000'000'000U);

    remove(camera);
    EXPECT_EQ(speedNow("0-20-0"), 480'000'000U);
    addCamera(usb3Ports, "2-3", "10000");
    EXPECT_EQ(speedNow("0-20-0"), 10'000'000'000U);
    EXPECT_EQ(m_log.text(), "");
}

TEST_F(LinuxUsbTree, findsTheControllerAboveHubsAndBelowBridges) {
    const std::string bridge = addPci("0000:00:1c.4");
    const std::string root = addHub(addPci("0001:0b:0a.1", bridge), "usb4", "5000");
    const std::string outer = addHub(root, "4-1", "5000");
    const std::string inner = addHub(outer, "4-1.2", "5000");
    addCamera(inner, "4-1.2.3", "5000");
    // Not this camera's ports.
    addDevice(root, "4-3", "480", "");
    addDevice(outer, "4-1.3", "480", "");
    EXPECT_EQ(speedNow("267-10-1"), 5'000'000'000U) << "bus 11 of domain 1";
    for (const platform::UsbDevice& device : platform::usbDevices())
        EXPECT_EQ(speedNow(device.controller), 5'000'000'000U) << "as real cameras name it";
    EXPECT_EQ(speedNow("0-28-4"), std::nullopt) << "the bridge";

    addCamera(addHub(add("platform", "xhci-hcd.0", "", "host", {}), "usb6", "5000"), "6-1", "5000");
    EXPECT_EQ(speedNow("xhci-hcd.0"), std::nullopt) << "a controller that is not on the PCI bus";
}

TEST_F(LinuxUsbTree, leavesOutADeviceThatGoesWhileItIsLookedAt) {
    const std::string controller = addPci("0000:00:14.0");
    const std::string root = addHub(controller, "usb2", "5000");
    const std::string camera = addCamera(root, "2-1", "5000");
    host::LinuxUsbTree tree([&] { return std::vector<std::filesystem::path>{root, camera}; });
    ASSERT_EQ(tree.hubs().size(), 1U);
    const host::DeviceInterface found = tree.devices().at(0);
    EXPECT_EQ(found.path, "USB#VID_4d52&PID_c0de#a1#" + camera);
    EXPECT_EQ(found.instanceId, "USB\\2-1");
    EXPECT_EQ(tree.locationInfo(found.instance).value, u"Port_#1");
    const auto hub = tree.openHub(root);
    EXPECT_EQ(tree.openHub(camera), nullptr);

    remove(camera);
    EXPECT_EQ(hub->connection(1)->status, 0U);
    EXPECT_NE(tree.locationInfo(found.instance).result, 0U);
    EXPECT_THAT(tree.devices(), IsEmpty());
    remove(root);
    EXPECT_EQ(tree.openHub(root), nullptr);
    EXPECT_THAT(tree.hubs(), IsEmpty());

    EXPECT_NE(tree.busNumber(found.instance).result, 0U) << "a device is not on the PCI bus";
    EXPECT_NE(tree.address(99).result, 0U) << "there is no such device";
    EXPECT_EQ(tree.parent(99), std::nullopt);
    EXPECT_EQ(tree.instanceId(0), "");
}

} // namespace
