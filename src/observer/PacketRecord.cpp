// SPDX-License-Identifier: BSD-3-Clause
#include "observer/PacketRecord.h"

#include "gvsp/Gvsp.h"
#include "gvsp/StreamFilter.h"
#include "observer/CaptureFile.h"

#include <algorithm>
#include <cstring>

#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <netinet/in.h>

namespace observer {

namespace {

/// Header of a packet without that of its link: LINKTYPE_LINUX_SLL of tcpdump.org/linktypes. All in
/// network byte order.
struct CookedHeader {
    std::uint16_t packetType;
    std::uint16_t hardwareType;
    std::uint16_t addressSize;
    std::uint8_t address[8];
    std::uint16_t protocol;
};
static_assert(sizeof(CookedHeader) == 16);

CookedHeader cookedHeader(const sockaddr_ll& link) {
    CookedHeader header{};
    header.packetType = htons(link.sll_pkttype);
    header.hardwareType = htons(link.sll_hatype);
    header.addressSize = htons(link.sll_halen);
    std::copy_n(link.sll_addr, sizeof header.address, header.address);
    header.protocol = htons(ETH_P_IP);
    return header;
}

/// Bytes of the packet to be kept: image data only pads the header up to its largest size.
std::size_t keptOf(const gvsp::StreamDatagram& datagram) {
    const auto before = static_cast<std::size_t>(datagram.data - datagram.packet);
    std::size_t kept = datagram.captured;
    if (datagram.fragment == gige::Fragment::Later) {
        kept = 0;
    } else if (kept >= gvsp::headerSize && gvsp::carriesPayload(datagram.data[4])) {
        const bool hasExtendedIds = (datagram.data[4] & gvsp::extendedIdsBit) != 0;
        kept = std::min(kept, (hasExtendedIds ? gvsp::extendedHeaderSize : gvsp::headerSize) +
                                  gvsp::multiPartHeaderSize);
    }
    return std::min(before + kept, PacketRecord::snapLength);
}

} // namespace

PacketRecord::Part& PacketRecord::partFor(std::size_t size, std::chrono::nanoseconds now) {
    if (m_isClosed || m_parts.back().blocks->size() + size > partSize) {
        while (!m_parts.empty() &&
               (m_parts.size() >= m_mostParts || now - m_parts.front().newest > age)) {
            m_completeSince = m_parts.front().newest;
            m_parts.pop_front();
        }
        m_parts.push_back({std::make_shared<Blocks>(), now});
        m_parts.back().blocks->reserve(partSize);
        m_isClosed = false;
    }
    return m_parts.back();
}

void PacketRecord::add(const gvsp::StreamDatagram& datagram) {
    if (datagram.packet == nullptr)
        return;
    // The system's clock was set back: by their times, all packets from now on would be older than
    // the last minute.
    if (!m_parts.empty() && datagram.arrival + age < m_parts.back().newest) {
        m_parts.clear();
        m_isClosed = true;
        m_completeSince = datagram.arrival;
    }
    const CookedHeader link = cookedHeader(*datagram.link);
    const std::size_t kept = keptOf(datagram);
    const auto header = packetBlock(m_adapter, datagram.arrival, sizeof link + kept,
                                    sizeof link + datagram.packetSize);
    Part& part = partFor(header.length, datagram.arrival);
    part.newest = datagram.arrival;
    Blocks& blocks = *part.blocks;
    const std::size_t begin = blocks.size();
    blocks.resize(begin + header.length);
    std::uint8_t* const block = blocks.data() + begin;
    std::memcpy(block, &header, sizeof header);
    std::memcpy(block + sizeof header, &link, sizeof link);
    std::memcpy(block + sizeof header + sizeof link, datagram.packet, kept);
    std::memcpy(block + header.length - sizeof header.length, &header.length, sizeof header.length);
}

PacketRecord::Parts PacketRecord::packets() {
    m_isClosed = true;
    Parts parts;
    for (const Part& part : m_parts)
        parts.push_back(part.blocks);
    return parts;
}

} // namespace observer
