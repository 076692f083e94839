// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orv::aravis {

/// A USB device of this host and its place on the bus.
struct UsbDevice {
    std::filesystem::path folder;
    std::string manufacturer;
    std::string product;
    std::string serialNumber;
    std::int64_t bus = 0;
    /// Changes each time the device is plugged in.
    std::int64_t number = 0;
    /// Ports from the root hub's down to the device's own: "4.2".
    std::string ports;
    /// Key of the host controller's place on the PCI bus: "0-20-0". Of a controller that is not on
    /// the PCI bus: "bus" and the USB bus's number.
    std::string controller;
    /// Bits per second of the device's link.
    std::int64_t linkSpeed = 0;

    /// "::bus/port/port...", as the feature DeviceLocation has it.
    std::string location() const;
    /// Whether a program of this host has claimed one of the device's interfaces.
    bool isClaimed() const;
    /// Whether the device has been plugged in all the time since it was listed.
    bool isPresent() const;
};

/// USB devices as the kernel shows them below \p sysfs. Reentrant.
std::vector<UsbDevice> usbDevices(const std::filesystem::path& sysfs);

} // namespace orv::aravis
