// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxSysfsUsbTree.h"

#include <libudev.h>

namespace host {

namespace {

struct Unref {
    void operator()(udev* library) const { udev_unref(library); }
    void operator()(udev_enumerate* enumeration) const { udev_enumerate_unref(enumeration); }
};

/// Folders of the USB devices that are there at the moment.
std::vector<std::filesystem::path> usbDevices() {
    const std::unique_ptr<udev, Unref> library(udev_new());
    const std::unique_ptr<udev_enumerate, Unref> enumeration(udev_enumerate_new(library.get()));
    if (!enumeration)
        return {};
    udev_enumerate_add_match_subsystem(enumeration.get(), "usb");
    // Without it, the devices' interfaces would be listed, too.
    udev_enumerate_add_match_property(enumeration.get(), "DEVTYPE", "usb_device");
    udev_enumerate_scan_devices(enumeration.get());

    std::vector<std::filesystem::path> folders;
    for (udev_list_entry* entry = udev_enumerate_get_list_entry(enumeration.get());
         entry != nullptr; entry = udev_list_entry_get_next(entry))
        folders.emplace_back(udev_list_entry_get_name(entry));
    return folders;
}

} // namespace

std::shared_ptr<HostUsbTree> makeSystemUsbTree() {
    return std::make_shared<LinuxSysfsUsbTree>(usbDevices);
}

} // namespace host
