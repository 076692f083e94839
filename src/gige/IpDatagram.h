// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>

namespace gige {

/// How much of a UDP datagram an IPv4 packet carries.
enum class Fragment : std::uint8_t {
    Whole,
    /// The beginning: the ports are known, and the size of the whole datagram.
    First,
    /// Any other part: ports are 0, and the size is that of the part.
    Later
};

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
    /// Bytes on the wire; more than captured only where the end of the packet was not kept, and in
    /// a first fragment.
    std::size_t size = 0;
    Fragment fragment = Fragment::Whole;
};

constexpr std::uint32_t udpHeaderSize = 8;
/// Bits at byte 6 of an IPv4 header that only a fragment has: more follow, or an offset.
constexpr std::uint16_t fragmentBits = 0x3FFF;
/// Those of the offset, which a first fragment has not.
constexpr std::uint16_t fragmentOffsetBits = 0x1FFF;

/// Reads the UDP datagram in an IPv4 packet of which \p captured bytes of \p size are at
/// \p packet into \p datagram: a value that is returned would be copied for each packet of a
/// stream. False for another protocol, for a fragment, and when a length contradicts another one.
/// Ignores the bytes that pad short Ethernet frames. Does not check checksums: Ethernet's protects
/// the link. Reentrant.
bool readIpDatagram(const std::uint8_t* packet, std::size_t captured, std::size_t size,
                    UdpDatagram& datagram);
/// The same, which takes fragments of UDP datagrams, too.
bool readIpFragment(const std::uint8_t* packet, std::size_t captured, std::size_t size,
                    UdpDatagram& datagram);

} // namespace gige
