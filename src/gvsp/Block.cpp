// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/Block.h"

#include <algorithm>
#include <utility>

namespace gvsp {

std::size_t BlockLayout::dataSize() const {
    const std::size_t headers = ipAndUdpSize + (hasExtendedIds ? extendedHeaderSize : headerSize);
    return packetSize > headers ? packetSize - headers : 0;
}

std::size_t BlockLayout::packets() const {
    // Packets of multi-part blocks hold the least.
    const std::size_t least = std::max(dataSize(), multiPartHeaderSize + 1) - multiPartHeaderSize;
    return (payload + least - 1) / least + 2;
}

Block::Block(const BlockLayout& layout, std::uint64_t id, std::uint64_t number,
             std::shared_ptr<FrameBuffer> frame)
    : m_layout(layout), m_id(id), m_number(number), m_frame(std::move(frame)),
      m_arrived(layout.mostPackets()), m_settled(layout.mostPackets()),
      m_requested(layout.mostPackets()) {}

Block::Taken Block::take(const Packet& packet, Time now) {
    if (packet.number >= m_layout.mostPackets()) {
        m_isOverrun = m_isOverrun || packet.format == Format::Trailer;
        return Taken::Refused;
    }
    if (m_arrived.contains(packet.number))
        return Taken::Duplicate;
    const Taken taken = packet.format == Format::Leader    ? takeLeader(packet)
                        : packet.format == Format::Trailer ? takeTrailer(packet)
                                                           : takeData(packet);
    if (taken == Taken::Refused)
        return taken;
    m_arrived.add(packet.number);
    m_settled.add(packet.number);
    m_next = std::max(m_next, packet.number + 1);
    m_latest = now;
    return m_requested.contains(packet.number) ? Taken::Requested : taken;
}

Block::Taken Block::takeLeader(const Packet& packet) {
    if (packet.number != 0)
        return Taken::Refused;
    m_leader = readLeader(packet);
    return m_leader ? Taken::New : Taken::Refused;
}

Block::Taken Block::takeTrailer(const Packet& packet) {
    if (packet.number < std::max(m_next, std::uint32_t{1}) || m_trailer)
        return Taken::Refused;
    m_trailer = packet.number;
    return Taken::New;
}

Block::Taken Block::takeData(const Packet& packet) {
    if (packet.number == 0 || (m_trailer && packet.number > *m_trailer))
        return Taken::Refused;
    const bool isPart = packet.format == Format::MultiPartData;
    const std::size_t header = isPart ? multiPartHeaderSize : 0;
    const std::size_t full = m_layout.dataSize() - std::min(m_layout.dataSize(), header);
    std::uint64_t offset = std::uint64_t{packet.number - 1} * full;
    if (isPart) {
        const auto named = multiPartOffset(packet);
        if (!named)
            return Taken::Refused;
        offset = *named;
    }
    const std::size_t size = packet.size - header;
    if (size > full || (isPart && offset > m_layout.payload))
        return Taken::Refused;
    m_isMultiPart = m_isMultiPart || isPart;
    if (size < full && !isPart) {
        ++m_shortPackets;
        m_lastShort = std::max(m_lastShort, packet.number);
    }
    // A frame that is larger than its payload is received to its end, and clipped.
    const std::size_t room = m_layout.payload - std::min<std::size_t>(m_layout.payload, offset);
    m_isClipped = m_isClipped || size > room;
    if (room == 0)
        return Taken::New;
    m_end = std::max(m_end, static_cast<std::size_t>(offset) + std::min(size, room));
    if (m_frame && packet.captured == packet.size)
        m_frame->store(static_cast<std::size_t>(offset), packet.data + header,
                       std::min(size, room));
    return Taken::New;
}

void Block::giveUp(std::uint32_t number, bool withPrevious) {
    if (number >= m_layout.mostPackets())
        return;
    m_settled.add(number);
    // Each packet is settled once, whatever the camera repeats.
    for (; withPrevious && m_settledBelow < number; ++m_settledBelow)
        m_settled.add(m_settledBelow);
}

bool Block::isMissing(std::uint32_t number) const {
    return !m_settled.contains(number);
}

bool Block::isWhole() const {
    return m_trailer && m_arrived.count() == m_next;
}

bool Block::isSettled() const {
    if (m_isOverrun || isWhole())
        return true;
    // Packets behind the trailer may have been given up: only then are all looked at.
    if (!m_trailer || m_settled.count() < m_next)
        return false;
    for (std::uint32_t each = 0; each < m_next; ++each) {
        if (isMissing(each))
            return false;
    }
    return true;
}

std::uint32_t Block::expected() const {
    const std::size_t header = m_isMultiPart ? multiPartHeaderSize : 0;
    const std::size_t data = m_layout.dataSize() - std::min(m_layout.dataSize(), header);
    if (m_trailer || data == 0)
        return m_next;
    std::size_t packets = 2;
    if (m_leader && !m_leader->partSizes.empty()) {
        for (const std::uint64_t size : m_leader->partSizes)
            packets += std::min<std::uint64_t>((size + data - 1) / data, m_layout.mostPackets());
    } else {
        packets += (m_layout.payload + data - 1) / data;
    }
    return std::max(m_next, static_cast<std::uint32_t>(std::min(packets, m_layout.mostPackets())));
}

std::vector<PacketRange> Block::request(std::uint32_t end, std::size_t most) {
    std::vector<PacketRange> ranges;
    for (std::uint32_t each = 0; each < end; ++each) {
        if (!isMissing(each))
            continue;
        if (ranges.empty() || ranges.back().last + 1 != each) {
            if (ranges.size() == most)
                break;
            ranges.push_back({each, each});
        }
        ranges.back().last = each;
        m_requested.add(each);
        ++m_requests;
    }
    return ranges;
}

FrameContents Block::contents() const {
    FrameContents contents;
    const bool isCut = m_shortPackets > 1 || (m_shortPackets == 1 && m_lastShort + 1 != m_trailer);
    contents.isWhole = isWhole() && !isCut && !m_isOverrun;
    if (m_isOverrun)
        contents.status = OrvFrameStatusTooSmall;
    else if (!contents.isWhole)
        contents.status = OrvFrameStatusIncomplete;
    else if (m_isClipped || m_end != m_layout.payload)
        contents.status = OrvFrameStatusTooSmall;
    else
        contents.status = OrvFrameStatusComplete;
    contents.id = m_number;
    if (m_leader) {
        contents.timestamp = m_leader->timestamp;
        if (contents.status != OrvFrameStatusIncomplete)
            contents.image = m_leader->image;
    }
    return contents;
}

} // namespace gvsp
