// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// Handle of a device in the host's device tree.
using DeviceInstance = std::uint32_t;

/// A device and the path by which it is opened.
struct DeviceInterface {
    std::string path;
    DeviceInstance instance = 0;
    /// Device instance ID, for example "USB\\ROOT_HUB30\\4&2a6b1f&0&0".
    std::string instanceId;
    /// Class, subclass and protocol of each of its USB interfaces, in one number of three bytes:
    /// 0xEF0500. Empty where the system does not report them.
    std::vector<std::uint32_t> interfaceClasses = {};
    /// On Windows the list that the instance belongs to: the instance is valid while it exists.
    std::shared_ptr<const void> list = {};
};

/// Windows' result codes of a property that is missing: an unknown device, a device without that
/// property.
constexpr std::uint32_t noSuchDevice = 0x0D;
constexpr std::uint32_t noSuchValue = 0x25;

/// A property's value and the system's return code; 0 is success.
template <typename T> struct Property {
    std::uint32_t result = 0;
    T value{};
};

/// State of a hub's port: the first structure of Windows' hub driver, or the same from another
/// system.
struct PortConnection {
    /// 1: a device is connected.
    std::uint32_t status = 0;
    /// 0 low, 1 full, 2 high, 3 super speed.
    std::uint8_t speed = 0;
    /// Bits per second; 0 from a system that reports the code instead.
    std::uint64_t bitsPerSecond = 0;
};

/// An opened hub. Ports count from 1; an answer is empty when the request failed.
class UsbHub {
public:
    virtual ~UsbHub() = default;

    virtual std::optional<PortConnection> connection(std::uint32_t port) = 0;
    /// Flags of the second structure: bit 0 operating at, bit 1 capable of super speed or higher,
    /// bit 2 and bit 3 the same for super speed plus.
    virtual std::optional<std::uint32_t> connectionFlagsV2(std::uint32_t port) = 0;
};

/// The USB tree of a host, real or simulated.
class HostUsbTree {
public:
    virtual ~HostUsbTree() = default;

    virtual std::vector<DeviceInterface> hubs() = 0;
    virtual std::vector<DeviceInterface> devices() = 0;
    virtual std::optional<DeviceInstance> parent(DeviceInstance instance) = 0;
    virtual std::string instanceId(DeviceInstance instance) = 0;
    /// Location text of a device, for example "Port_#0003.Hub_#0001".
    virtual Property<std::u16string> locationInfo(DeviceInstance instance) = 0;
    /// PCI bus number of a host controller, plus 256 times its PCI domain.
    virtual Property<std::uint32_t> busNumber(DeviceInstance instance) = 0;
    /// PCI device number in the high, function number in the low 16 bits.
    virtual Property<std::uint32_t> address(DeviceInstance instance) = 0;
    /// Opens a hub by its path; empty when it cannot be opened.
    virtual std::unique_ptr<UsbHub> openHub(const std::string& path) = 0;
};

/// Several hosts, simulated ones and the real one; none is null.
using HostUsbTrees = std::vector<std::shared_ptr<HostUsbTree>>;

/// The operating system's USB tree (one definition per operating system).
std::shared_ptr<HostUsbTree> makeSystemUsbTree();

} // namespace host
