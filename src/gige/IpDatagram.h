// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace gige {

/// One UDP datagram. Points into the packet that it was read from. The sender is not to be trusted:
/// only the sizes here are checked.
struct UdpDatagram {
    /// IPv4 addresses, host byte order.
    std::uint32_t sender = 0;
    std::uint32_t destination = 0;
    std::uint16_t senderPort = 0;
    /// Destination port.
    std::uint16_t port = 0;
    /// UDP payload.
    const std::uint8_t* data = nullptr;
    /// Bytes at data.
    std::size_t captured = 0;
    /// Bytes on the wire; more than captured only where the end of the packet was not kept.
    std::size_t size = 0;
};

constexpr std::uint32_t udpHeaderSize = 8;
/// Bits at byte 6 of an IPv4 header that only a fragment has: more follow, or an offset.
constexpr std::uint16_t fragmentBits = 0x3FFF;

/// The UDP datagram in an IPv4 packet of which \p captured bytes of \p size are at \p packet.
/// Nothing for another protocol, for a fragment, and when a length contradicts another one.
/// Ignores the bytes that pad short Ethernet frames. Does not check checksums: Ethernet's protects
/// the link. Reentrant.
std::optional<UdpDatagram> readIpDatagram(const std::uint8_t* packet, std::size_t captured,
                                          std::size_t size);

} // namespace gige
