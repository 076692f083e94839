// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/StreamPackets.h"

#include "platform/Ipv4Address.h"
#include "platform/UdpSocket.h"

#include <sys/socket.h>

#include <algorithm>

namespace fakecamera {

using namespace protocol;

namespace {

constexpr std::size_t patternPeriod = 256;
constexpr std::size_t packetsPerCall = 64;
constexpr std::size_t framesKept = 16;
constexpr std::uint32_t extendedIdBit = 0x80000000;
constexpr std::uint16_t imagePayload = 1;
constexpr std::uint16_t multiPartPayload = 10;
/// Of a part's description in a leader: data type of an image, and size of the description.
constexpr std::uint16_t imagePart = 1;
constexpr std::size_t partSize = 48;
constexpr std::size_t partFormatOffset = 8;
constexpr std::size_t partRegionOffset = 24;
/// In front of the data of a packet: part, zone, and the data's 48-bit offset.
constexpr std::size_t multiPartHeaderSize = 8;

} // namespace

StreamPackets::StreamPackets(const CameraRegisters& registers, bool extendedIds,
                             std::uint32_t parts, std::uint32_t lossPercent,
                             const platform::UdpSocket& socket)
    : m_extendedIds(extendedIds), m_isMultiPart(parts > 0), m_lossPercent(lossPercent),
      m_socket(socket), m_destination(platform::socketAddress(
                            registers.read(StreamAddress),
                            static_cast<std::uint16_t>(registers.read(StreamPort) & 0xffff))),
      m_format(registers.read(PixelFormat)), m_region{registers.read(Width), registers.read(Height),
                                                      registers.read(OffsetX),
                                                      registers.read(OffsetY)},
      m_payload(registers.payload()),
      m_dataSize((registers.read(StreamPacketSize) & packetSizeBits) - ipAndUdpSize -
                 (extendedIds ? extendedStreamHeaderSize : streamHeaderSize) -
                 (m_isMultiPart ? multiPartHeaderSize : 0)),
      m_pattern(m_payload + patternPeriod) {
    const std::size_t stride = m_payload / m_region[1];
    for (std::size_t i = 0; i < m_pattern.size(); ++i)
        m_pattern[i] = static_cast<std::uint8_t>(i % stride + i / stride);
    divide(std::max<std::uint32_t>(parts, 1));
    m_prepared.reserve(packetsPerCall);
    const bool mayBeSplit = (registers.read(StreamPacketSize) & doNotFragment) == 0;
    socket.set(IPPROTO_IP, IP_MTU_DISCOVER, mayBeSplit ? IP_PMTUDISC_DONT : IP_PMTUDISC_PROBE);
}

void StreamPackets::divide(std::uint32_t parts) {
    const std::uint32_t height = m_region[1];
    const std::size_t stride = m_payload / height;
    for (std::uint32_t i = 0; i < parts; ++i) {
        const std::uint32_t first = height * i / parts;
        const std::uint32_t lines = height * (i + 1) / parts - first;
        // The last part also has the bytes that do not fill a line.
        const std::size_t size = i + 1 < parts ? lines * stride : m_payload - first * stride;
        m_parts.push_back({first, lines, first * stride, size, m_dataPackets + 1});
        m_dataPackets += static_cast<std::uint32_t>((size + m_dataSize - 1) / m_dataSize);
    }
}

const StreamPackets::Part& StreamPackets::partOf(std::uint32_t packet) const {
    return *std::find_if(m_parts.rbegin(), m_parts.rend(),
                         [packet](const Part& part) { return part.firstPacket <= packet; });
}

std::size_t StreamPackets::imageBytes(std::uint32_t packet) const {
    if (packet == 0 || packet > m_dataPackets)
        return 0;
    const Part& part = partOf(packet);
    return std::min(m_dataSize, part.size - (packet - part.firstPacket) * m_dataSize);
}

void StreamPackets::begin(std::uint64_t frameId, std::uint64_t timestamp) {
    if (m_frames.size() == framesKept)
        m_frames.pop_front();
    m_frames.push_back({frameId, timestamp, 0});
}

void StreamPackets::addNext() {
    Frame& frame = m_frames.back();
    add(frame, frame.next++, Success);
}

void StreamPackets::dropNext() {
    ++m_frames.back().next;
}

std::uint32_t StreamPackets::addAgain(std::uint64_t frameId, std::uint32_t first,
                                      std::uint32_t last) {
    const auto frame = std::find_if(m_frames.rbegin(), m_frames.rend(),
                                    [frameId](const Frame& each) { return each.id == frameId; });
    if (frame == m_frames.rend() || first >= frame->next) {
        addUnavailable(frameId, first);
        return 0;
    }
    const std::uint32_t end = std::min(last, frame->next - 1) + 1;
    for (std::uint32_t packet = first; packet < end; ++packet)
        add(*frame, packet, m_extendedIds ? Resent : Success);
    return end - std::min(first, end);
}

void StreamPackets::add(const Frame& frame, std::uint32_t packet, Status status) {
    Prepared& prepared = addEmpty();
    std::uint8_t* const at = prepared.header.data();
    const bool isImage = imageBytes(packet) != 0;
    const StreamPacket data = m_isMultiPart ? StreamPacket::MultiPart : StreamPacket::Data;
    const StreamPacket type = isImage       ? data
                              : packet == 0 ? StreamPacket::Leader
                                            : StreamPacket::Trailer;
    prepared.headerSize = putHeader(at, status, type, frame.id, packet);
    std::uint8_t* const behind = at + prepared.headerSize;
    if (isImage) {
        const Part& part = partOf(packet);
        prepared.headerSize += putDataHeader(behind, packet);
        prepared.data = m_pattern.data() + part.offset + (packet - part.firstPacket) * m_dataSize +
                        frame.id % patternPeriod;
        prepared.size = imageBytes(packet);
    } else {
        prepared.headerSize +=
            packet == 0 ? putLeader(behind, frame.timestamp) : putTrailer(behind);
    }
}

void StreamPackets::addUnavailable(std::uint64_t frameId, std::uint32_t packet) {
    Prepared& prepared = addEmpty();
    prepared.headerSize =
        putHeader(prepared.header.data(), PacketUnavailable, StreamPacket::Data, frameId, packet);
}

StreamPackets::Prepared& StreamPackets::addEmpty() {
    if (m_prepared.size() == packetsPerCall)
        flush();
    return m_prepared.emplace_back(Prepared{{}, 0, nullptr, 0});
}

void StreamPackets::flush() {
    if (m_lossPercent > 0)
        m_prepared.erase(
            std::remove_if(m_prepared.begin(), m_prepared.end(),
                           [this](const Prepared&) { return m_random() % 100 < m_lossPercent; }),
            m_prepared.end());
    std::array<std::array<iovec, 2>, packetsPerCall> parts;
    std::array<mmsghdr, packetsPerCall> messages{};
    for (std::size_t i = 0; i < m_prepared.size(); ++i) {
        Prepared& prepared = m_prepared[i];
        parts[i][0] = {prepared.header.data(), prepared.headerSize};
        parts[i][1] = {const_cast<std::uint8_t*>(prepared.data), prepared.size};
        messages[i].msg_hdr.msg_name = &m_destination;
        messages[i].msg_hdr.msg_namelen = sizeof m_destination;
        messages[i].msg_hdr.msg_iov = parts[i].data();
        messages[i].msg_hdr.msg_iovlen = prepared.size == 0 ? 1 : 2;
    }
    std::size_t done = 0;
    while (done < m_prepared.size()) {
        const int sent = sendmmsg(m_socket.handle(), &messages[done],
                                  static_cast<unsigned>(m_prepared.size() - done), 0);
        // A packet that cannot be sent counts as lost on the wire.
        done += sent > 0 ? static_cast<std::size_t>(sent) : 1;
    }
    m_prepared.clear();
}

std::size_t StreamPackets::putHeader(std::uint8_t* at, Status status, StreamPacket type,
                                     std::uint64_t frameId, std::uint32_t packet) const {
    const std::uint32_t typeBits = static_cast<std::uint32_t>(type) << 24;
    put16(at, status);
    if (!m_extendedIds) {
        put16(at + 2, static_cast<std::uint16_t>(frameId));
        put32(at + 4, typeBits | packet);
        return streamHeaderSize;
    }
    put16(at + 2, 0);
    const bool isCounted = m_isMultiPart && type == StreamPacket::Leader;
    put32(at + 4,
          extendedIdBit | typeBits | (isCounted ? static_cast<std::uint32_t>(m_parts.size()) : 0));
    put64(at + 8, frameId);
    put32(at + 16, packet);
    return extendedStreamHeaderSize;
}

std::size_t StreamPackets::putLeader(std::uint8_t* at, std::uint64_t timestamp) const {
    put16(at, 0);
    put16(at + 2, m_isMultiPart ? multiPartPayload : imagePayload);
    put64(at + 4, timestamp);
    if (!m_isMultiPart) {
        put32(at + 12, m_format);
        putRegion(at + 16, m_parts.front());
        put32(at + 32, 0);
        return 36;
    }
    std::uint8_t* place = at + 12;
    for (const Part& part : m_parts) {
        std::fill_n(place, partSize, std::uint8_t{0});
        put16(place, imagePart);
        put16(place + 2, static_cast<std::uint16_t>(std::uint64_t{part.size} >> 32));
        put32(place + 4, static_cast<std::uint32_t>(part.size));
        put32(place + partFormatOffset, m_format);
        putRegion(place + partRegionOffset, part);
        place += partSize;
    }
    return static_cast<std::size_t>(place - at);
}

/// Width, height and offsets.
void StreamPackets::putRegion(std::uint8_t* at, const Part& part) const {
    put32(at, m_region[0]);
    put32(at + 4, part.lines);
    put32(at + 8, m_region[2]);
    put32(at + 12, m_region[3] + part.firstLine);
}

std::size_t StreamPackets::putDataHeader(std::uint8_t* at, std::uint32_t packet) const {
    if (!m_isMultiPart)
        return 0;
    const Part& part = partOf(packet);
    const std::uint64_t offset = part.offset + (packet - part.firstPacket) * m_dataSize;
    put16(at, static_cast<std::uint16_t>((&part - m_parts.data()) << 8));
    put16(at + 2, static_cast<std::uint16_t>(offset >> 32));
    put32(at + 4, static_cast<std::uint32_t>(offset));
    return multiPartHeaderSize;
}

std::size_t StreamPackets::putTrailer(std::uint8_t* at) const {
    put32(at, m_isMultiPart ? multiPartPayload : imagePayload);
    put32(at + 4, m_isMultiPart ? 0 : m_region[1]);
    return 8;
}

} // namespace fakecamera
