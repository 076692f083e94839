// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <vector>

namespace platform {

/// A UDP socket of any program in this network namespace (IPv4).
struct UdpSocketEntry {
    /// Host byte order; 0: all addresses of this host.
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    /// Packets that the kernel has discarded since the socket was opened, most often as its buffer
    /// was full.
    std::uint64_t drops = 0;
    /// Tells the socket from others that were opened before or later at this place.
    std::uint64_t inode = 0;
};

/// Reads /proc/net/udp below \p root. Leaves out lines that it does not understand. Reentrant.
std::vector<UdpSocketEntry> readUdpSockets(const std::filesystem::path& root = "/");

/// What the sockets that receive packets to this address and port have dropped, by their inodes.
std::map<std::uint64_t, std::uint64_t> dropsAt(const std::vector<UdpSocketEntry>& sockets,
                                               std::uint32_t address, std::uint16_t port);

} // namespace platform
