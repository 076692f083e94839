// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/PacketSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace orv::aravis {

constexpr std::uint32_t udpHeaderSize = 8;
/// Bits at byte 6 of an IPv4 header that only a fragment has: more follow, or an offset.
constexpr std::uint16_t fragmentBits = 0x3FFF;

/// The UDP datagram in an IPv4 packet of which \p captured bytes of \p size are at \p packet.
/// Nothing for another protocol, for a fragment, and when a length contradicts another one.
/// Ignores the bytes that pad short Ethernet frames. Does not check checksums: Ethernet's protects
/// the link. Reentrant.
std::optional<StreamDatagram> readIpDatagram(const std::uint8_t* packet, std::size_t captured,
                                             std::size_t size);

} // namespace orv::aravis
