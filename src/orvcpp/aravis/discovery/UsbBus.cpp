// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/UsbBus.h"

#include "platform/PciLocation.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace orv::aravis {

namespace fs = std::filesystem;

namespace {

constexpr double bitsPerMegabit = 1e6;

std::string attribute(const fs::path& folder, const char* name) {
    std::string line;
    std::ifstream file(folder / name);
    std::getline(file, line);
    line.erase(line.find_last_not_of(" \t\r\n") + 1);
    return line;
}

/// Key of the last PCI device on a path like /sys/devices/pci0000:00/0000:00:14.0/usb2/2-1: the
/// bridges come before the controller.
std::string controllerKey(const fs::path& folder) {
    std::string key;
    for (const fs::path& part : folder) {
        if (const auto location = platform::parsePciLocation(part))
            key = location->key();
    }
    return key;
}

/// A device's folder has a bus number; an interface's folder does not.
bool isDevice(const fs::path& folder) {
    std::error_code error;
    return fs::exists(folder / "busnum", error);
}

UsbDevice readDevice(const fs::path& folder) {
    UsbDevice device;
    device.folder = folder;
    device.manufacturer = attribute(folder, "manufacturer");
    device.product = attribute(folder, "product");
    device.serialNumber = attribute(folder, "serial");
    device.bus = std::atoll(attribute(folder, "busnum").c_str());
    device.number = std::atoll(attribute(folder, "devnum").c_str());
    device.ports = attribute(folder, "devpath");
    device.controller = controllerKey(folder);
    if (device.controller.empty())
        device.controller = "bus" + std::to_string(device.bus);
    // "1.5", "480", "5000", "20000"
    device.linkSpeed = static_cast<std::int64_t>(
        std::strtod(attribute(folder, "speed").c_str(), nullptr) * bitsPerMegabit);
    return device;
}

} // namespace

std::string UsbDevice::location() const {
    std::string path = ports;
    std::replace(path.begin(), path.end(), '.', '/');
    return "::" + std::to_string(bus) + '/' + path;
}

bool UsbDevice::isClaimed() const {
    std::error_code error;
    const std::string prefix = folder.filename().string() + ':';
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code none;
        if (entry->path().filename().string().rfind(prefix, 0) == 0 &&
            fs::read_symlink(entry->path() / "driver", none).filename() == "usbfs")
            return true;
    }
    return false;
}

bool UsbDevice::isPresent() const {
    // A device that was unplugged and plugged in again has another number.
    return isDevice(folder) && std::atoll(attribute(folder, "devnum").c_str()) == number;
}

std::vector<UsbDevice> usbDevices(const fs::path& sysfs) {
    std::vector<UsbDevice> devices;
    std::error_code error;
    for (fs::directory_iterator entry(sysfs / "bus/usb/devices", error), end;
         !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        const fs::path folder = fs::canonical(entry->path(), gone);
        if (!gone && isDevice(folder))
            devices.push_back(readDevice(folder));
    }
    std::sort(devices.begin(), devices.end(), [](const UsbDevice& one, const UsbDevice& other) {
        return one.folder < other.folder;
    });
    return devices;
}

} // namespace orv::aravis
