// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orv::genicam {

/// A network adapter of this host, by one of its addresses.
struct NetworkAdapter {
    std::string name;
    /// Host byte order.
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    std::uint64_t mac = 0;
    /// Bytes.
    std::int64_t mtu = 0;
    /// Bits per second; 0 when the adapter does not know.
    std::int64_t linkSpeed = 0;
    bool isLoopback = false;
};

/// The adapter through which packets to \p address leave this host; nothing when there is no route
/// to it. Reentrant.
std::optional<NetworkAdapter> adapterTowards(std::uint32_t address);

/// Reads an address like "192.168.1.20"; nothing when it is none.
std::optional<std::uint32_t> parseAddress(const std::string& text);

/// Number of a MAC address like "02:fc:00:00:00:01"; 0 for a text that is none.
std::uint64_t macNumber(const std::string& text);

} // namespace orv::genicam
