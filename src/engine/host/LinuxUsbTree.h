// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostUsbTree.h"

#include <filesystem>
#include <functional>
#include <map>
#include <vector>

namespace host {

/// The USB tree in sysfs, where a device is a folder inside the folder of its hub or controller.
/// Reentrant.
///
/// Paths of hubs are their folders. Paths of devices name vendor and product in the form that
/// parseDevicePath reads, and end with the folder.
class LinuxUsbTree : public HostUsbTree {
public:
    /// Lists the folders of all USB devices, including hubs, without symbolic links.
    using DeviceList = std::function<std::vector<std::filesystem::path>()>;

    explicit LinuxUsbTree(DeviceList usbDevices);

    std::vector<DeviceInterface> hubs() override;
    std::vector<DeviceInterface> devices() override;
    std::optional<DeviceInstance> parent(DeviceInstance instance) override;
    /// Subsystem and name of the folder: "PCI\\0000:00:14.0", "USB\\2-1.4".
    std::string instanceId(DeviceInstance instance) override;
    Property<std::u16string> locationInfo(DeviceInstance instance) override;
    Property<std::uint32_t> busNumber(DeviceInstance instance) override;
    Property<std::uint32_t> address(DeviceInstance instance) override;
    std::unique_ptr<UsbHub> openHub(const std::string& path) override;

private:
    DeviceInstance instanceOf(const std::filesystem::path& folder);
    const std::filesystem::path* folderOf(DeviceInstance instance) const;

    const DeviceList m_usbDevices;
    /// A folder's instance is its fixed position in the list, counted from 1.
    std::vector<std::filesystem::path> m_folders;
    std::map<std::filesystem::path, DeviceInstance> m_instances;
};

} // namespace host
