// SPDX-License-Identifier: BSD-3-Clause
#include "platform/UsbDevice.h"

#include "platform/PciLocation.h"
#include "platform/Sysfs.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace platform {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> entriesOf(const fs::path& folder) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        entries.push_back(entry->path());
    return entries;
}

std::int64_t number(const fs::path& file) {
    return static_cast<std::int64_t>(sysfsNumber(file).value_or(0));
}

/// Key of the last PCI device on a path like /sys/devices/pci0000:00/0000:00:14.0/usb2/2-1: the
/// bridges come before the controller.
std::string controllerKey(const fs::path& folder) {
    std::string key;
    for (const fs::path& part : folder)
        if (const auto location = parsePciLocation(part.string()))
            key = location->key();
    return key;
}

/// Folders of devices have a bus number, folders of their interfaces do not.
bool isDevice(const fs::path& folder) {
    std::error_code error;
    return fs::exists(folder / "busnum", error);
}

UsbDevice readDevice(const fs::path& folder) {
    UsbDevice device;
    device.folder = folder;
    device.manufacturer = sysfsAttribute(folder / "manufacturer");
    device.product = sysfsAttribute(folder / "product");
    device.serialNumber = sysfsAttribute(folder / "serial");
    device.bus = number(folder / "busnum");
    device.number = number(folder / "devnum");
    device.ports = sysfsAttribute(folder / "devpath");
    device.controller = controllerKey(folder);
    if (device.controller.empty())
        device.controller = "bus" + std::to_string(device.bus);
    device.linkSpeed = static_cast<std::int64_t>(usbLinkSpeed(folder).value_or(0));
    return device;
}

/// 0xEF0500 of the interface whose folder has "ef", "05" and "00"; nothing for other folders.
std::optional<std::uint32_t> interfaceClass(const fs::path& folder) {
    const std::string digits = sysfsAttribute(folder / "bInterfaceClass") +
                               sysfsAttribute(folder / "bInterfaceSubClass") +
                               sysfsAttribute(folder / "bInterfaceProtocol");
    constexpr std::size_t digitsOfThreeBytes = 6;
    const char* const end = digits.data() + digits.size();
    std::uint32_t value = 0;
    const auto parsed = std::from_chars(digits.data(), end, value, 16);
    if (digits.size() != digitsOfThreeBytes || parsed.ec != std::errc() || parsed.ptr != end)
        return std::nullopt;
    return value;
}

} // namespace

std::string UsbDevice::location() const {
    std::string path = ports;
    std::replace(path.begin(), path.end(), '.', '/');
    return "::" + std::to_string(bus) + '/' + path;
}

bool UsbDevice::isClaimed() const {
    const std::string prefix = folder.filename().string() + ':';
    const std::vector<fs::path> entries = entriesOf(folder);
    return std::any_of(entries.begin(), entries.end(), [&](const fs::path& entry) {
        std::error_code none;
        return entry.filename().string().rfind(prefix, 0) == 0 &&
               fs::read_symlink(entry / "driver", none).filename() == "usbfs";
    });
}

bool UsbDevice::isPresent() const {
    // A device that was unplugged and plugged in again has another number.
    return isDevice(folder) && platform::number(folder / "devnum") == number;
}

std::vector<fs::path> usbDeviceFolders(const fs::path& sysfs) {
    std::vector<fs::path> folders;
    for (const fs::path& entry : entriesOf(sysfs / "bus/usb/devices")) {
        std::error_code gone;
        const fs::path folder = fs::canonical(entry, gone);
        if (!gone && isDevice(folder))
            folders.push_back(folder);
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

std::vector<UsbDevice> usbDevices(const fs::path& sysfs) {
    std::vector<UsbDevice> devices;
    for (const fs::path& folder : usbDeviceFolders(sysfs))
        devices.push_back(readDevice(folder));
    return devices;
}

std::vector<std::uint32_t> usbInterfaceClasses(const fs::path& folder) {
    std::vector<std::uint32_t> classes;
    for (const fs::path& entry : entriesOf(folder))
        if (const auto found = interfaceClass(entry))
            classes.push_back(*found);
    return classes;
}

std::optional<std::uint64_t> usbLinkSpeed(const fs::path& folder) {
    // "1.5", "480", "5000", "20000"; "unknown"
    constexpr double bitsPerMegabit = 1e6;
    const double megabits = std::strtod(sysfsAttribute(folder / "speed").c_str(), nullptr);
    return megabits > 0
               ? std::optional(static_cast<std::uint64_t>(std::llround(megabits * bitsPerMegabit)))
               : std::nullopt;
}

} // namespace platform
