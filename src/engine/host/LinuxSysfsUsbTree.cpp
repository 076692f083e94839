// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxSysfsUsbTree.h"

#include "engine/host/Sysfs.h"
#include "platform/PciLocation.h"

#include <algorithm>
#include <cctype>
#include <charconv>
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
    return sysfsAttribute(folder / "bDeviceClass");
}

bool isHub(const fs::path& folder) {
    return deviceClass(folder) == "09";
}

bool isOtherThanHub(const fs::path& folder) {
    const std::string found = deviceClass(folder);
    return !found.empty() && found != "09";
}

std::string devicePath(const fs::path& folder) {
    return "USB#VID_" + sysfsAttribute(folder / "idVendor") + "&PID_" +
           sysfsAttribute(folder / "idProduct") + '#' + sysfsAttribute(folder / "serial") + '#' +
           folder.string();
}

/// 0xEF0500 of the interface whose folder has "ef", "05" and "00"; empty for other folders.
std::optional<std::uint32_t> interfaceClass(const fs::path& folder) {
    const std::string digits = sysfsAttribute(folder / "bInterfaceClass") +
                               sysfsAttribute(folder / "bInterfaceSubClass") +
                               sysfsAttribute(folder / "bInterfaceProtocol");
    constexpr std::size_t digitsOfThreeBytes = 6;
    const char* const end = digits.data() + digits.size();
    std::uint32_t number = 0;
    const auto parsed = std::from_chars(digits.data(), end, number, 16);
    if (digits.size() != digitsOfThreeBytes || parsed.ec != std::errc() || parsed.ptr != end)
        return std::nullopt;
    return number;
}

std::vector<std::uint32_t> interfaceClasses(const fs::path& device) {
    std::vector<std::uint32_t> classes;
    std::error_code error;
    for (fs::directory_iterator entry(device, error), end; !error && entry != end;
         entry.increment(error)) {
        if (const auto found = interfaceClass(entry->path()))
            classes.push_back(*found);
    }
    return classes;
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
        PortConnection found;
        found.status = 1;
        found.megabits = sysfsAttribute(device / "speed");
        return found.megabits.empty() ? std::nullopt : std::optional(found);
    }

    /// The first answer tells all.
    std::optional<std::uint32_t> connectionFlagsV2(std::uint32_t) override { return std::nullopt; }

private:
    /// Of what is on port 4: "2-4" on the root hub "usb2", "2-1.4" on the hub "2-1".
    std::string deviceName(std::uint32_t port) const {
        const std::string hub = m_folder.filename().string();
        const std::string rootHub = "usb";
        const bool isRoot = hub.rfind(rootHub, 0) == 0;
        return (isRoot ? hub.substr(rootHub.size()) + '-' : hub + '.') + std::to_string(port);
    }

    const fs::path m_folder;
};

} // namespace

LinuxSysfsUsbTree::LinuxSysfsUsbTree(DeviceList usbDevices) : m_usbDevices(std::move(usbDevices)) {}

std::vector<DeviceInterface> LinuxSysfsUsbTree::hubs() {
    std::vector<DeviceInterface> found;
    for (const fs::path& folder : m_usbDevices()) {
        if (isHub(folder)) {
            const DeviceInstance instance = instanceOf(folder);
            found.push_back({folder.string(), instance, instanceId(instance)});
        }
    }
    return found;
}

std::vector<DeviceInterface> LinuxSysfsUsbTree::devices() {
    std::vector<DeviceInterface> found;
    for (const fs::path& folder : m_usbDevices()) {
        if (isOtherThanHub(folder)) {
            const DeviceInstance instance = instanceOf(folder);
            found.push_back(
                {devicePath(folder), instance, instanceId(instance), interfaceClasses(folder)});
        }
    }
    return found;
}

std::optional<DeviceInstance> LinuxSysfsUsbTree::parent(DeviceInstance instance) {
    const fs::path* folder = folderOf(instance);
    // Every device has this file, and the folders around all devices do not.
    if (folder == nullptr || !isThere(folder->parent_path() / "uevent"))
        return std::nullopt;
    return instanceOf(folder->parent_path());
}

std::string LinuxSysfsUsbTree::instanceId(DeviceInstance instance) {
    const fs::path* folder = folderOf(instance);
    return folder == nullptr ? std::string()
                             : upperCase(subsystem(*folder)) + '\\' + folder->filename().string();
}

Property<std::u16string> LinuxSysfsUsbTree::locationInfo(DeviceInstance instance) {
    const fs::path* folder = folderOf(instance);
    if (folder == nullptr)
        return {noSuchDevice, {}};
    // Ports from the root hub's to the device's own, "1.4"; "0" for a root hub.
    const std::string ports = sysfsAttribute(*folder / "devpath");
    if (ports.empty() || ports == "0")
        return {noSuchValue, {}};
    const std::string location = "Port_#" + ports.substr(ports.rfind('.') + 1);
    return {0, {location.begin(), location.end()}};
}

Property<std::uint32_t> LinuxSysfsUsbTree::busNumber(DeviceInstance instance) {
    const auto location = pciLocation(folderOf(instance));
    return location ? Property<std::uint32_t>{0, location->bus}
                    : Property<std::uint32_t>{noSuchValue, 0};
}

Property<std::uint32_t> LinuxSysfsUsbTree::address(DeviceInstance instance) {
    const auto location = pciLocation(folderOf(instance));
    return location ? Property<std::uint32_t>{0, location->device << 16U | location->function}
                    : Property<std::uint32_t>{noSuchValue, 0};
}

std::unique_ptr<UsbHub> LinuxSysfsUsbTree::openHub(const std::string& path) {
    return isHub(path) ? std::make_unique<SysfsUsbHub>(path) : nullptr;
}

DeviceInstance LinuxSysfsUsbTree::instanceOf(const fs::path& folder) {
    const auto next = static_cast<DeviceInstance>(m_folders.size() + 1);
    const auto [known, isNew] = m_instances.emplace(folder, next);
    if (isNew)
        m_folders.push_back(folder);
    return known->second;
}

const fs::path* LinuxSysfsUsbTree::folderOf(DeviceInstance instance) const {
    return instance == 0 || instance > m_folders.size() ? nullptr : &m_folders[instance - 1];
}

} // namespace host
