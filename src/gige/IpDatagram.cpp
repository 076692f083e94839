// SPDX-License-Identifier: BSD-3-Clause
#include "gige/IpDatagram.h"

#include "gige/BigEndian.h"

#include <algorithm>

#include <netinet/in.h>

namespace gige {

namespace {

constexpr std::size_t smallestIpHeader = 20;

} // namespace

std::optional<UdpDatagram> readIpDatagram(const std::uint8_t* packet, std::size_t captured,
                                          std::size_t size) {
    if (captured < smallestIpHeader || packet[0] >> 4U != 4)
        return std::nullopt;
    const std::size_t header = (packet[0] & 0xFU) * std::size_t{4};
    const std::size_t total = bigEndian16(packet + 2);
    if (header < smallestIpHeader || captured < header + udpHeaderSize || total > size ||
        total < header + udpHeaderSize)
        return std::nullopt;
    if (packet[9] != IPPROTO_UDP || (bigEndian16(packet + 6) & fragmentBits) != 0)
        return std::nullopt;
    const std::uint8_t* const udp = packet + header;
    const std::size_t length = bigEndian16(udp + 4);
    if (length < udpHeaderSize || length > total - header)
        return std::nullopt;
    UdpDatagram datagram;
    datagram.sender = bigEndian32(packet + 12);
    datagram.destination = bigEndian32(packet + 16);
    datagram.senderPort = bigEndian16(udp);
    datagram.port = bigEndian16(udp + 2);
    datagram.data = udp + udpHeaderSize;
    datagram.size = length - udpHeaderSize;
    datagram.captured = std::min(datagram.size, captured - header - udpHeaderSize);
    return datagram;
}

} // namespace gige
