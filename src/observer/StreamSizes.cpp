// SPDX-License-Identifier: BSD-3-Clause
#include "observer/StreamSizes.h"

#include <algorithm>
#include <utility>

namespace observer {

namespace {

/// More packets than any camera's frame has: 400 MB of 1500 bytes each. A number that no other
/// packet confirms may be damaged, and is believed up to a lower one.
constexpr std::size_t mostPackets = 1U << 18U;
constexpr std::size_t mostUnconfirmed = 1U << 16U;
constexpr std::size_t largestPayload = mostPackets * 1500;
/// Data of the smallest packet that every camera supports, so that made-up small ones do not make
/// frames of millions of packets.
constexpr std::size_t smallestFull = gvsp::smallestPacketSize - gvsp::ipAndUdpSize -
                                     gvsp::extendedHeaderSize - gvsp::multiPartHeaderSize;
/// Pixel formats hold the bits of a pixel here (GenICam PFNC 2.4, 6.1).
constexpr unsigned bitsOfPixel(OrvPixelFormatType format) {
    return static_cast<unsigned>(format) >> 16U & 0xFFU;
}

/// After so many frames without a trailer, their packets' highest number tells the size.
constexpr unsigned mostWithoutTrailer = 30;

std::size_t headerOf(const gvsp::Packet& packet) {
    return gvsp::ipAndUdpSize +
           (packet.hasExtendedIds ? gvsp::extendedHeaderSize : gvsp::headerSize);
}

} // namespace

std::optional<StreamSizes::Sizes> StreamSizes::note(const gvsp::Packet& packet) {
    if (packet.availability != gvsp::Availability::Present)
        return std::nullopt;
    if (packet.block != m_current) {
        m_current = packet.block;
        ++m_framesWithoutTrailer;
    }
    if (packet.format == gvsp::Format::Leader) {
        const auto leader = gvsp::readLeader(packet);
        m_block = packet.block;
        m_image = leader ? leader->image : std::nullopt;
        m_firstSize = m_lastSize = m_blockFull = 0;
        m_lastNumber = 0;
        return std::nullopt;
    }
    if (packet.format == gvsp::Format::Trailer) {
        m_framesWithoutTrailer = 0;
        if (const auto exact = packet.block == m_block ? sizesOf(packet) : std::nullopt)
            return exact;
        const bool isConfirmed = std::exchange(m_trailer, packet.number) == packet.number;
        return isConfirmed && packet.number > 0 ? estimate(packet, packet.number - 1)
                                                : std::nullopt;
    }
    noteData(packet);
    if (m_framesWithoutTrailer < mostWithoutTrailer)
        return std::nullopt;
    m_framesWithoutTrailer = 0;
    return estimate(packet, std::exchange(m_highest, 0));
}

void StreamSizes::noteData(const gvsp::Packet& packet) {
    m_fullSize = std::max(m_fullSize, packet.size);
    m_highest = std::max(m_highest, packet.number);
    if (packet.block != m_block)
        return;
    if (packet.number == 1)
        m_firstSize = packet.size;
    m_blockFull = std::max(m_blockFull, packet.size);
    if (packet.number >= m_lastNumber) {
        m_lastNumber = packet.number;
        m_lastSize = packet.size;
    }
}

std::optional<StreamSizes::Sizes> StreamSizes::estimate(const gvsp::Packet& packet,
                                                        std::size_t dataPackets) const {
    if (dataPackets == 0 || dataPackets > mostUnconfirmed || m_fullSize < smallestFull)
        return std::nullopt;
    return Sizes{dataPackets * m_fullSize, m_fullSize + headerOf(packet), false};
}

std::optional<StreamSizes::Sizes> StreamSizes::sizesOf(const gvsp::Packet& trailer) const {
    // Number of the last data packet.
    const std::size_t last = trailer.number == 0 ? 0 : trailer.number - 1;
    if (last == 0 || last > mostPackets)
        return std::nullopt;
    if (m_lastNumber == 0)
        return sizesOfImage(trailer);
    if (m_firstSize == 0 || m_lastNumber != last)
        return std::nullopt;
    const std::size_t full = last > 1 ? m_blockFull : m_fullSize;
    if (last > 1 && full < smallestFull)
        return std::nullopt;
    const Sizes sizes{(last - 1) * full + m_lastSize, full + headerOf(trailer), true};
    return sizes;
}

/// Of a stream whose data never come: the path does not carry packets of their size.
std::optional<StreamSizes::Sizes> StreamSizes::sizesOfImage(const gvsp::Packet& trailer) const {
    if (!m_image)
        return std::nullopt;
    const std::uint64_t pixels = std::uint64_t{m_image->width} * m_image->height;
    const std::uint64_t bits = bitsOfPixel(m_image->format);
    if (pixels == 0 || bits == 0 || pixels > largestPayload / bits * 8)
        return std::nullopt;
    const auto payload = static_cast<std::size_t>((pixels * bits + 7) / 8);
    const std::size_t packets = trailer.number - 1;
    const std::size_t full = (payload + packets - 1) / packets;
    return full < smallestFull ? std::nullopt
                               : std::optional(Sizes{payload, full + headerOf(trailer), false});
}

} // namespace observer
