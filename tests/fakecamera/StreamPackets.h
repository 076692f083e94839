// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/fakecamera/CameraRegisters.h"
#include "tests/fakecamera/Protocol.h"

#include <netinet/in.h>

#include <array>
#include <cstdint>
#include <vector>

namespace fakecamera {

/// Makes and sends the packets of an acquisition's frames: packet 0 is the leader, the last one the
/// trailer, those between carry the image. The image is a ramp that moves from frame to frame: byte
/// i of frame f is pattern(i + f % 256), so nothing is computed or copied per frame.
class StreamPackets {
public:
    /// Takes size, format, packet size and destination from the registers.
    StreamPackets(const CameraRegisters& registers, bool extendedIds);

    /// Number of packets of a frame, with leader and trailer.
    std::uint32_t count() const { return m_dataPackets + 2; }
    /// Image bytes in a full packet.
    std::size_t dataSize() const { return m_dataSize; }
    bool isData(std::uint32_t packet) const { return packet != 0 && packet <= m_dataPackets; }

    /// Starts a frame: its number, and its moment in nanoseconds.
    void begin(std::uint64_t frameId, std::uint64_t timestamp);
    std::uint64_t frameId() const { return m_frameId; }
    /// True for this frame and the few before it, whose packets can still be made.
    bool isRecent(std::uint64_t frameId) const;

    /// Adds a packet of a recent frame to those that the next call of flush() sends.
    void add(int socket, std::uint64_t frameId, std::uint32_t packet);
    void flush(int socket);

private:
    struct Prepared {
        std::array<std::uint8_t, 64> header;
        std::size_t headerSize;
        const std::uint8_t* data;
        std::size_t size;
    };

    std::size_t putHeader(std::uint8_t* at, protocol::StreamPacket type, std::uint64_t frameId,
                          std::uint32_t packet) const;
    std::size_t putLeader(std::uint8_t* at) const;

    bool m_extendedIds;
    sockaddr_in m_destination;
    std::uint32_t m_format;
    std::array<std::uint32_t, 4> m_region;
    std::size_t m_payload;
    std::size_t m_dataSize;
    std::uint32_t m_dataPackets;
    std::vector<std::uint8_t> m_pattern;
    std::uint64_t m_frameId = 0;
    std::uint64_t m_timestamp = 0;
    std::vector<Prepared> m_prepared;
};

} // namespace fakecamera
