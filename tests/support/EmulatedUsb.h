// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <umockdev.h>
#include <vector>

/// A host whose USB devices come and go as the test wants it: below /sys and /dev, this process and
/// those that it starts see these and no others. Needs the main of EmulatedUsbMain.cpp.
class EmulatedUsb : public testing::Test {
protected:
    void SetUp() override {
        if (!umockdev_in_mock_environment())
            GTEST_SKIP() << "libumockdev-preload.so.0 is missing: scripts/install-dependencies "
                            "installs it";
    }

    /// \p attributes are pairs of a name and a value. Returns the folder in /sys, like the next
    /// ones.
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

    /// Folder that holds what is seen at "/".
    std::filesystem::path root() const {
        gchar* const found = umockdev_testbed_get_root_dir(m_testbed.get());
        const std::filesystem::path folder = found;
        g_free(found);
        return folder;
    }

private:
    const std::shared_ptr<UMockdevTestbed> m_testbed{umockdev_testbed_new(), g_object_unref};
};
