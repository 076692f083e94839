// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/PacketRecord.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

/// Files of captured packets: pcapng (IETF draft-ietf-opsawg-pcapng), which Wireshark reads.
namespace observer {

/// What an adapter has received.
struct CapturedAdapter {
    std::string name;
    PacketRecord::Parts packets;
    /// Packets that this program itself has missed since it began.
    std::uint64_t missed = 0;
};

/// Begin of a packet in the file (Enhanced Packet Block). The packet follows, padded to 4 bytes,
/// and \p length once more.
struct PacketBlock {
    std::uint32_t type;
    /// Bytes of the whole block.
    std::uint32_t length;
    std::uint32_t adapter;
    std::uint32_t timeHigh;
    std::uint32_t timeLow;
    std::uint32_t captured;
    std::uint32_t size;
};

/// For \p captured bytes of a packet of \p size that arrived at this time since 1970.
PacketBlock packetBlock(std::uint32_t adapter, std::chrono::nanoseconds arrival,
                        std::size_t captured, std::size_t size);

/// Writes the packets of the last minute, sorted by time, and what was missed; replaces \p file
/// when all is written. Leaves out packets later than the system's clock, which was set back. The
/// adapters are numbered as in their records. Reentrant.
std::error_code writeCapture(const std::filesystem::path& file,
                             const std::vector<CapturedAdapter>& adapters);

} // namespace observer
