// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/AddressText.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The network adapters of this host, as Linux tells them. All functions are reentrant.
namespace platform {

/// An IPv4 address of this host and the adapter that has it. Addresses are in host byte order.
struct NetworkAdapter {
    /// Name of the adapter: "eth0".
    std::string name;
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    /// 0 for an adapter that sends no broadcasts.
    std::uint32_t broadcast = 0;
    bool isUp = false;
    bool isLoopback = false;
};

/// One entry per IPv4 address, in the kernel's order; nothing when the kernel gives no list.
std::optional<std::vector<NetworkAdapter>> networkAdapters();

/// The adapter through which packets to \p address leave this host; nothing when there is no route
/// to it.
std::optional<NetworkAdapter> adapterTowards(std::uint32_t address);

/// Which of \p adapters the label of an address names: "eth0", and also "eth0:1" or "eth0cameras"
/// of a further address, which begin with the adapter's name. Empty when it is none of them.
/// \p adapters must come from the same query as the label: if "eth10" were missing, its label would
/// be taken for one of "eth1".
std::string adapterOf(const std::string& label, const std::vector<std::string>& adapters);

/// Bits per second of an adapter's link; 0 when it is not known. Asks the driver first, since the
/// kernel's files below \p sysfs may show the adapters of another network namespace; reads those
/// files when the driver reports no speed. Drivers of virtual adapters report an invented speed,
/// often 10 Gbit/s.
std::int64_t linkSpeed(const std::string& adapter, const std::filesystem::path& sysfs = "/sys");

/// Bytes of the largest packet that an adapter sends and receives whole; 0 when it is not known.
std::int64_t mtu(const std::string& adapter, const std::filesystem::path& sysfs = "/sys");

/// Whether an adapter can be told to wait for more packets before it interrupts. A virtio adapter
/// can only where its host offers that (VIRTIO_NET_F_NOTF_COAL; Virtual I/O Device 1.2, 5.1.3);
/// true for every other one.
bool mayCoalesce(const std::string& adapter, const std::filesystem::path& sysfs = "/sys");

/// MAC address of an adapter; 0 when it is not known or has another length than six bytes.
std::uint64_t macAddress(const std::string& adapter, const std::filesystem::path& sysfs = "/sys");

/// Whether the kernel discards packets that an adapter receives from an address to which it has no
/// route (reverse-path filter), as its files below \p root tell. "Loose" filters do so, too.
bool checksWayBack(const std::string& adapter, const std::filesystem::path& root = "/");

/// Number of a MAC address like "02:fc:00:00:00:01", with ":", "-" or nothing between the digits;
/// 0 for any other text.
std::uint64_t macNumber(const std::string& text);

} // namespace platform
