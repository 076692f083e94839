// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxUsbTree.h"
#include "engine/InterfaceHandlerUSB.h"
#include "platform/UsbDevice.h"
#include "tests/support/CapturedLog.h"

#include <gmock/gmock.h>
#include <memory>
#include <stdlib.h>
#include <umockdev.h>
#include <unistd.h>

namespace {

using testing::IsEmpty;

/// A host whose USB devices come and go as the test wants it: below /sys, this process sees these
/// and no others.
class LinuxUsbTree : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(umockdev_in_mock_environment())
            << "libumockdev-preload.so.0 is missing: scripts/install-dependencies installs it";
    }

    /// \p attributes are pairs of a name and a value.
    std::string add(const char* subsystem, const std::string& name, const std::string& parent,
                    const char* type, const std::vector<std::string>& attributes) {
        gchar* added = umockdev_testbed_add_device(m_testbed.get(), subsystem, name.c_str(),
                                                   parent.empty() ? nullptr : parent.c_str(),
                                                   nullptr, "DEVTYPE", type, nullptr);
        const std::string folder = added;
        g_free(added);
        for (std::size_t i = 0; i < attributes.size(); i += 2)
            set(folder, attributes[i].c_str(), attributes[i + 1].c_str());
        return folder;
    }

    void set(const std::string& folder, const char* attribute, const char* value) {
        umockdev_testbed_set_attribute(m_testbed.get(), folder.c_str(), attribute, value);
    }

    std::string addPci(const std::string& name, const std::string& parent = {}) {
        return add("pci", name, parent, "pci_device", {"class", "0x0c0330"});
    }

    /// A device is on the ports that its name tells: "2-4", "2-4.1"; a root hub is "usb2".
    std::string addUsb(const std::string& parent, const std::string& name, const std::string& speed,
                       const char* deviceClass, const char* vendor, const char* product) {
        const std::size_t dash = name.find('-');
        return add("usb", name, parent, "usb_device",
                   {"bDeviceClass", deviceClass, "idVendor", vendor, "idProduct", product, "serial",
                    "a1", "speed", speed, "busnum", "2", "devpath",
                    dash == std::string::npos ? "0" : name.substr(dash + 1)});
    }
    std::string addHub(const std::string& parent, const std::string& name,
                       const std::string& speed) {
        return addUsb(parent, name, speed, "09", "1d6b", "0003");
    }
    std::string addDevice(const std::string& parent, const std::string& name,
                          const std::string& speed, const char* product) {
        return addUsb(parent, name, speed, "ef", "4d52", product);
    }

    /// A camera of some maker, as its product and interface class tell.
    std::string addCamera(const std::string& parent, const std::string& name,
                          const std::string& speed) {
        const std::string camera = addDevice(parent, name, speed, "c0de");
        addInterface(camera, name + ":1.0", "00");
        addInterface(camera, name + ":1.1", "02");
        return camera;
    }

    void addInterface(const std::string& device, const std::string& name, const char* protocol) {
        add("usb", name, device, "usb_interface",
            {"bInterfaceClass", "ef", "bInterfaceSubClass", "05", "bInterfaceProtocol", protocol});
    }

    void remove(const std::string& folder) {
        umockdev_testbed_remove_device(m_testbed.get(), folder.c_str());
    }

    std::optional<std::uint64_t> speedNow(const std::string& controller) {
        m_handler.rebuild();
        return m_handler.GetSpeed("MRD USB Interface " + controller);
    }

    const std::shared_ptr<UMockdevTestbed> m_testbed{umockdev_testbed_new(), g_object_unref};
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

/// Puts \p value before what a variable of the environment has, as lists of options and libraries
/// are written.
void prepend(const char* variable, const std::string& value) {
    const char* before = getenv(variable);
    setenv(variable, (before == nullptr ? value : value + ':' + before).c_str(), 1);
}

} // namespace

/// Starts this program anew behind the library that shows it a test's devices below /sys.
int main(int argc, char** argv) {
    const std::string library = "libumockdev-preload.so.0";
    const char* preloaded = getenv("LD_PRELOAD");
    if (preloaded == nullptr || std::string(preloaded).find(library) == std::string::npos) {
        prepend("LD_PRELOAD", library);
        // Lets the address sanitizer's library be the second one; by default it must be the first.
        prepend("ASAN_OPTIONS", "verify_asan_link_order=0");
        execv("/proc/self/exe", argv);
        perror("/proc/self/exe");
        return 1;
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
