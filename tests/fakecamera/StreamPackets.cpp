// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/StreamPackets.h"

#include "tests/fakecamera/UdpSocket.h"

#include <sys/socket.h>

#include <algorithm>

namespace fakecamera {

using namespace protocol;

namespace {

constexpr std::size_t patternPeriod = 256;
constexpr std::size_t packetsPerCall = 64;
constexpr std::uint64_t framesKept = 4;
constexpr std::uint32_t extendedIdBit = 0x80000000;
constexpr std::uint16_t imagePayload = 1;

} // namespace

StreamPackets::StreamPackets(const CameraRegisters& registers, bool extendedIds)
    : m_extendedIds(extendedIds),
      m_destination(socketAddress(registers.read(StreamAddress),
                                  static_cast<std::uint16_t>(registers.read(StreamPort) & 0xffff))),
      m_format(registers.read(PixelFormat)), m_region{registers.read(Width), registers.read(Height),
                                                      registers.read(OffsetX),
                                                      registers.read(OffsetY)},
      m_payload(registers.payload()),
      m_dataSize((registers.read(StreamPacketSize) & 0xffff) - ipAndUdpSize -
                 (extendedIds ? extendedStreamHeaderSize : streamHeaderSize)),
      m_dataPackets(static_cast<std::uint32_t>((m_payload + m_dataSize - 1) / m_dataSize)),
      m_pattern(m_payload + patternPeriod) {
    const std::size_t stride = std::max<std::size_t>(1, m_payload / m_region[1]);
    for (std::size_t i = 0; i < m_pattern.size(); ++i) {
        m_pattern[i] = static_cast<std::uint8_t>(i % stride + i / stride);
    }
    m_prepared.reserve(packetsPerCall);
}

void StreamPackets::begin(std::uint64_t frameId, std::uint64_t timestamp) {
    m_frameId = frameId;
    m_timestamp = timestamp;
}

bool StreamPackets::isRecent(std::uint64_t frameId) const {
    return frameId != 0 && m_frameId - frameId < framesKept;
}

void StreamPackets::add(int socket, std::uint64_t frameId, std::uint32_t packet) {
    if (m_prepared.size() == packetsPerCall) {
        flush(socket);
    }
    Prepared& prepared = m_prepared.emplace_back();
    std::uint8_t* const at = prepared.header.data();
    prepared.data = nullptr;
    prepared.size = 0;
    if (packet == 0) {
        prepared.headerSize = putHeader(at, StreamPacket::Leader, frameId, packet);
        prepared.headerSize += putLeader(at + prepared.headerSize);
    } else if (isData(packet)) {
        const std::size_t offset = (packet - 1) * m_dataSize;
        prepared.headerSize = putHeader(at, StreamPacket::Data, frameId, packet);
        prepared.data = m_pattern.data() + offset + frameId % patternPeriod;
        prepared.size = std::min(m_dataSize, m_payload - offset);
    } else {
        prepared.headerSize = putHeader(at, StreamPacket::Trailer, frameId, packet);
        put32(at + prepared.headerSize, imagePayload);
        put32(at + prepared.headerSize + 4, m_region[1]);
        prepared.headerSize += 8;
    }
}

void StreamPackets::flush(int socket) {
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
        const int sent =
            sendmmsg(socket, &messages[done], static_cast<unsigned>(m_prepared.size() - done), 0);
        // A packet that cannot be sent is lost, as it would be on a wire.
        done += sent > 0 ? static_cast<std::size_t>(sent) : 1;
    }
    m_prepared.clear();
}

std::size_t StreamPackets::putHeader(std::uint8_t* at, StreamPacket type, std::uint64_t frameId,
                                     std::uint32_t packet) const {
    const std::uint32_t typeBits = static_cast<std::uint32_t>(type) << 24;
    put16(at, Success);
    if (!m_extendedIds) {
        put16(at + 2, static_cast<std::uint16_t>(frameId));
        put32(at + 4, typeBits | packet);
        return streamHeaderSize;
    }
    put16(at + 2, 0);
    put32(at + 4, extendedIdBit | typeBits);
    put64(at + 8, frameId);
    put32(at + 16, packet);
    return extendedStreamHeaderSize;
}

std::size_t StreamPackets::putLeader(std::uint8_t* at) const {
    put16(at, 0);
    put16(at + 2, imagePayload);
    put64(at + 4, m_timestamp);
    put32(at + 12, m_format);
    for (std::size_t i = 0; i < m_region.size(); ++i) {
        put32(at + 16 + 4 * i, m_region[i]);
    }
    put32(at + 32, 0);
    return 36;
}

} // namespace fakecamera
