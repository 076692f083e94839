// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace orv::aravis {

/// A network adapter of this host, by one of its addresses.
struct NetworkAdapter {
    std::string name;
    /// Host byte order.
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    std::uint64_t mac = 0;
    bool isLoopback = false;
};

/// The adapter through which packets to \p address leave this host; nothing when there is no route
/// to it. Reentrant.
std::optional<NetworkAdapter> adapterTowards(std::uint32_t address);

/// Bits per second of an adapter's link as the kernel shows it below \p sysfs; 0 when the adapter
/// does not know. Reentrant.
std::int64_t linkSpeed(const std::string& adapter, const std::filesystem::path& sysfs = "/sys");

/// Bytes that an adapter sends and receives in one packet. Reentrant.
std::int64_t mtu(const std::string& adapter);

/// Parses an address like "192.168.1.20"; empty when malformed.
std::optional<std::uint32_t> parseAddress(const std::string& text);

/// Number of a MAC address like "02:fc:00:00:00:01"; 0 for a text that is none.
std::uint64_t macNumber(const std::string& text);

} // namespace orv::aravis
