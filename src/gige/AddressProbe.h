// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/NetworkAdapters.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace gige {

/// The MAC address of a host on the network of \p adapter that has \p address; nothing when none
/// has, or the adapter knows no such addresses. Takes up to a second.
///
/// Asks by ARP where this process may open packet sockets (CAP_NET_RAW). Elsewhere it lets the
/// kernel ask and reads its table, which keeps a host that has left for about a minute. Reentrant.
std::optional<std::uint64_t> hostWithAddress(const platform::NetworkAdapter& adapter,
                                             std::uint32_t address);

/// The MAC address that the kernel's table of neighbours in \p file has for \p address on the
/// adapter; nothing when it has none. Reentrant.
std::optional<std::uint64_t> knownNeighbour(const platform::NetworkAdapter& adapter,
                                            std::uint32_t address,
                                            const std::filesystem::path& file = "/proc/net/arp");

} // namespace gige
