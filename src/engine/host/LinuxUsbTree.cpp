// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxUsbTree.h"

#include "platform/PciLocation.h"
#include "platform/Sysfs.h"
#include "platform/UsbDevice.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace host {

namespace fs = std::filesystem;

namespace {

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return text;
}

bool isThere(const fs::path& file) {
    std::error_code error;
    return fs::exists(file, error);
}

/// "usb", "pci"; empty for a folder that is of none.
std::string subsystem(const fs::path& folder) {
    std::error_code error;
    return fs::read_symlink(folder / "subsystem", error).filename().string();
}

/// Class of a device: "09" is a hub. Empty for one that has just been unplugged.
std::string deviceClass(const fs::path& folder) {
    return platform::sysfsAttribute(folder / "bDeviceClass");
}

bool isHub(const fs::path& folder) {
    return deviceClass(folder) == "09";
}

bool isOtherThanHub(const fs::path& folder) {
    const std::string found = deviceClass(folder);
    return !found.empty() && found != "09";
}

std::string devicePath(const fs::path& folder) {
    return "USB#VID_" + platform::sysfsAttribute(folder / "idVendor") + "&PID_" +
           platform::sysfsAttribute(folder / "idProduct") + '#' +
           platform::sysfsAttribute(folder / "serial") + '#' + folder.string();
}

/// Place of a device such as "/sys/devices/pci0000:00/0000:00:14.0"; empty when it is not on the
/// PCI bus.
std::optional<platform::PciLocation> pciLocation(const fs::path* folder) {
    if (folder == nullptr || subsystem(*folder) != "pci")
        return std::nullopt;
    return platform::parsePciLocation(folder->filename());
}

class SysfsUsbHub : public UsbHub {
public:
    explicit SysfsUsbHub(fs::path folder) : m_folder(std::move(folder)) {}

    std::optional<PortConnection> connection(std::uint32_t port) override {
        const fs::path device = m_folder / deviceName(port);
        if (!isThere(device))
            return PortConnection{};
        const auto speed = platform::usbLinkSpeed(device);
        return speed ? std::optional(PortConnection{1, 0, *speed}) : std::nullopt;
    }

    /// connection() has the speed.
    std::optional<std::uint32_t> connectionFlagsV2(std::uint32_t) override { return std::nullopt; }

private:
    /// Folder name of the device on a port, for port 4: "2-4" on the root hub "usb2", "2-1.4" on
    /// the hub "2-1".
    std::string deviceName(std::uint32_t port) const {
        const std::string hub = m_folder.filename().string();
        const std::string rootHub = "usb";
        const bool isRoot = hub.rfind(rootHub, 0) == 0;
        return (isRoot ? hub.substr(rootHub.size()) + '-' : hub + '.') + std::to_string(port);
    }

    const fs::path m_folder;
};

} // namespace

LinuxUsbTree::LinuxUsbTree(DeviceList usbDevices) : m_usbDevices(std::move(usbDevices)) {}

std::vector<DeviceInterface> LinuxUsbTree::hubs() {
    std::vector<DeviceInterface> found;
    for (const fs::path& folder : m_usbDevices()) {
        if (isHub(folder)) {
            const DeviceInstance instance = instanceOf(folder);
            found.push_back({folder.string(), instance, instanceId(instance)});
        }
    }
    return found;
}

std::vector<DeviceInterface> LinuxUsbTree::devices() {
    std::vector<DeviceInterface> found;
    for (const fs::path& folder : m_usbDevices()) {
        if (isOtherThanHub(folder)) {
            const DeviceInstance instance = instanceOf(folder);
            found.push_back({devicePath(folder), instance, instanceId(instance),
                             platform::usbInterfaceClasses(folder)});
        }
    }
    return found;
}

std::optional<DeviceInstance> LinuxUsbTree::parent(DeviceInstance instance) {
    const fs::path* folder = folderOf(instance);
    // Every device has this file; the folders above all devices do not.
    if (folder == nullptr || !isThere(folder->parent_path() / "uevent"))
        return std::nullopt;
    return instanceOf(folder->parent_path());
}

std::string LinuxUsbTree::instanceId(DeviceInstance instance) {
    const fs::path* folder = folderOf(instance);
    return folder == nullptr ? std::string()
                             : upperCase(subsystem(*folder)) + '\\' + folder->filename().string();
}

Property<std::u16string> LinuxUsbTree::locationInfo(DeviceInstance instance) {
    const fs::path* folder = folderOf(instance);
    if (folder == nullptr)
        return {noSuchDevice, {}};
    // Ports from the root hub's to the device's own, "1.4"; "0" for a root hub.
    const std::string ports = platform::sysfsAttribute(*folder / "devpath");
    if (ports.empty() || ports == "0")
        return {noSuchValue, {}};
    const std::string location = "Port_#" + ports.substr(ports.rfind('.') + 1);
    return {0, {location.begin(), location.end()}};
}

Property<std::uint32_t> LinuxUsbTree::busNumber(DeviceInstance instance) {
    const auto location = pciLocation(folderOf(instance));
    return location ? Property<std::uint32_t>{0, location->bus}
                    : Property<std::uint32_t>{noSuchValue, 0};
}

Property<std::uint32_t> LinuxUsbTree::address(DeviceInstance instance) {
    const auto location = pciLocation(folderOf(instance));
    return location ? Property<std::uint32_t>{0, location->device << 16U | location->function}
                    : Property<std::uint32_t>{noSuchValue, 0};
}

std::unique_ptr<UsbHub> LinuxUsbTree::openHub(const std::string& path) {
    return isHub(path) ? std::make_unique<SysfsUsbHub>(path) : nullptr;
}

DeviceInstance LinuxUsbTree::instanceOf(const fs::path& folder) {
    const auto next = static_cast<DeviceInstance>(m_folders.size() + 1);
    const auto [known, isNew] = m_instances.emplace(folder, next);
    if (isNew)
        m_folders.push_back(folder);
    return known->second;
}

const fs::path* LinuxUsbTree::folderOf(DeviceInstance instance) const {
    return instance == 0 || instance > m_folders.size() ? nullptr : &m_folders[instance - 1];
}

std::shared_ptr<HostUsbTree> makeSystemUsbTree() {
    return std::make_shared<LinuxUsbTree>([] { return platform::usbDeviceFolders(); });
}

} // namespace host
