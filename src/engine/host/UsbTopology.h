// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostUsbTree.h"

#include <cstdint>
#include <optional>
#include <string>

/// Decisions on USB devices, apart from the operating system. All functions are reentrant.
namespace host {

/// USB vendor ID of the maker's cameras.
constexpr std::uint32_t cameraVendorId = 0x4D52;
/// USB product ID of the maker's USB3 Vision cameras.
constexpr std::uint32_t cameraProductId = 1;

/// Parts of a device interface path; each is empty where the path does not have it.
struct UsbIdentity {
    std::optional<std::uint32_t> vendorId;
    std::optional<std::uint32_t> productId;
    std::optional<std::string> serial;
};

/// Reads for example "\\?\usb#vid_4d52&pid_0001#a1b2#{...}". Case does not matter: Windows writes
/// the path of one device in either.
UsbIdentity parseDevicePath(const std::string& path);

/// Whether this is one of the maker's USB3 Vision cameras or, where the host reports the classes of
/// a device's interfaces, a USB3 Vision camera of any maker.
bool isCamera(const UsbIdentity& identity, const std::vector<std::uint32_t>& interfaceClasses = {});

/// Port of a location text such as "Port_#0003.Hub_#0001"; empty when it names none.
std::optional<std::uint32_t> portNumber(const std::u16string& location);

/// Whether a device instance ID is of a device on the PCI bus. Above a USB hub that is the host
/// controller.
bool isOnPciBus(const std::string& instanceId);

/// "bus-device-function", decimal. \p address has the device number in its high, the function
/// number in its low 16 bits.
std::string controllerKey(std::uint32_t bus, std::uint32_t address);

/// Bits per second of a port to which a device is connected; empty when none is, or its speed is
/// not known. USB 3 ports report high speed in the first structure: only \p flags, where the hub
/// driver gave them, show super speed. Faster speeds are known only where the connection has its
/// rate.
std::optional<std::uint64_t> bitsPerSecond(const PortConnection& connection,
                                           std::optional<std::uint32_t> flags);

} // namespace host
