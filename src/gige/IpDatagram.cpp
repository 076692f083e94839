// SPDX-License-Identifier: BSD-3-Clause
#include "gige/IpDatagram.h"

#include "gige/BigEndian.h"

#include <algorithm>

#include <netinet/in.h>

namespace gige {

namespace {

constexpr std::size_t smallestIpHeader = 20;

/// Bytes of the IPv4 header of a UDP packet; 0 where the packet is none.
std::size_t udpHeaderOffset(const std::uint8_t* packet, std::size_t captured, std::size_t size) {
    if (captured < smallestIpHeader || packet[0] >> 4U != 4 || packet[9] != IPPROTO_UDP)
        return 0;
    const std::size_t header = (packet[0] & 0xFU) * std::size_t{4};
    const std::size_t total = bigEndian16(packet + 2);
    return header < smallestIpHeader || captured < header || total < header || total > size
               ? 0
               : header;
}

void readAddresses(const std::uint8_t* packet, UdpDatagram& datagram) {
    datagram.sender = bigEndian32(packet + 12);
    datagram.destination = bigEndian32(packet + 16);
}

/// Takes a datagram that begins at \p header of the packet.
bool readBegin(const std::uint8_t* packet, std::size_t captured, std::size_t header,
               UdpDatagram& datagram) {
    const std::size_t total = bigEndian16(packet + 2);
    if (captured < header + udpHeaderSize || total < header + udpHeaderSize)
        return false;
    const std::uint8_t* const udp = packet + header;
    const std::size_t length = bigEndian16(udp + 4);
    const std::size_t here = total - header;
    const bool isWhole = datagram.fragment == Fragment::Whole;
    if (length < udpHeaderSize || (isWhole ? length > here : length <= here))
        return false;
    readAddresses(packet, datagram);
    datagram.senderPort = bigEndian16(udp);
    datagram.port = bigEndian16(udp + 2);
    datagram.data = udp + udpHeaderSize;
    datagram.size = length - udpHeaderSize;
    datagram.captured = std::min(std::min(length, here), captured - header) - udpHeaderSize;
    return true;
}

} // namespace

bool readIpDatagram(const std::uint8_t* packet, std::size_t captured, std::size_t size,
                    UdpDatagram& datagram) {
    const std::size_t header = udpHeaderOffset(packet, captured, size);
    if (header == 0 || (bigEndian16(packet + 6) & fragmentBits) != 0)
        return false;
    datagram.fragment = Fragment::Whole;
    return readBegin(packet, captured, header, datagram);
}

bool readIpFragment(const std::uint8_t* packet, std::size_t captured, std::size_t size,
                    UdpDatagram& datagram) {
    const std::size_t header = udpHeaderOffset(packet, captured, size);
    if (header == 0)
        return false;
    const std::uint16_t bits = bigEndian16(packet + 6) & fragmentBits;
    if ((bits & fragmentOffsetBits) == 0) {
        datagram.fragment = bits == 0 ? Fragment::Whole : Fragment::First;
        return readBegin(packet, captured, header, datagram);
    }
    readAddresses(packet, datagram);
    datagram.fragment = Fragment::Later;
    datagram.senderPort = datagram.port = 0;
    datagram.data = packet + header;
    datagram.size = bigEndian16(packet + 2) - header;
    datagram.captured = std::min(datagram.size, captured - header);
    return true;
}

} // namespace gige
