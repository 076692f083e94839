// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The USB devices of this host, as Linux shows them in sysfs. All functions are reentrant.
namespace platform {

/// Class, subclass and protocol of the control interface that every USB3 Vision camera has.
constexpr std::uint32_t usb3VisionControl = 0xEF0500;

/// A USB device of this host and its place.
struct UsbDevice {
    std::filesystem::path folder;
    std::string manufacturer;
    std::string product;
    std::string serialNumber;
    std::int64_t bus = 0;
    /// Changes each time that the device is plugged in.
    std::int64_t number = 0;
    /// Ports from the root hub's down to the device's own: "4.2".
    std::string ports;
    /// Key of the host controller's place on the PCI bus: "0-20-0". Of a controller that is not on
    /// the PCI bus: "bus" and the USB bus's number.
    std::string controller;
    /// Bits per second of the device's link; 0 when it is not known.
    std::int64_t linkSpeed = 0;

    /// "::bus/port/port...", as the feature DeviceLocation has it.
    std::string location() const;
    /// Whether a program of this host has claimed one of the device's interfaces.
    bool isClaimed() const;
    /// Whether the device is still plugged in; false also when it was pulled and plugged in again.
    bool isPresent() const;
};

/// Folders of all USB devices, hubs among them, below \p sysfs: sorted, without symbolic links.
std::vector<std::filesystem::path> usbDeviceFolders(const std::filesystem::path& sysfs = "/sys");

/// All USB devices, hubs among them, below \p sysfs, by their folders.
std::vector<UsbDevice> usbDevices(const std::filesystem::path& sysfs = "/sys");

/// Class, subclass and protocol of each interface of the device in \p folder, in one number of
/// three bytes: 0xEF0500.
std::vector<std::uint32_t> usbInterfaceClasses(const std::filesystem::path& folder);

/// Bits per second at which the device in \p folder runs; nothing when the kernel does not know.
std::optional<std::uint64_t> usbLinkSpeed(const std::filesystem::path& folder);

} // namespace platform
