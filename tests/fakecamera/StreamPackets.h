// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/fakecamera/CameraRegisters.h"
#include "tests/fakecamera/Protocol.h"

#include <netinet/in.h>

#include <array>
#include <cstdint>
#include <deque>
#include <vector>

namespace fakecamera {

class UdpSocket;

/// Makes and sends the packets of an acquisition's frames: packet 0 is the leader, the last one the
/// trailer, those between carry the image. The image is a ramp that moves from frame to frame: byte
/// i of frame f is pattern(i + f % 256), so nothing is computed or copied per frame.
class StreamPackets {
public:
    /// Takes size, format, packet size and destination from the registers, and sets whether routers
    /// and adapters may split packets.
    StreamPackets(const CameraRegisters& registers, bool extendedIds, UdpSocket& socket);

    /// Number of packets of a frame, with leader and trailer.
    std::uint32_t count() const { return m_dataPackets + 2; }
    /// Image bytes in a packet: none in leader and trailer.
    std::size_t imageBytes(std::uint32_t packet) const;

    /// Starts a frame: its number, and its moment in nanoseconds.
    void begin(std::uint64_t frameId, std::uint64_t timestamp);
    /// The frame's next packet, and whether all had their turn.
    std::uint32_t next() const { return m_frames.back().next; }
    bool isDone() const { return next() == count(); }
    /// Adds the next packet to those that the next call of flush() sends.
    void addNext();
    /// Passes the next packet over, as if it had been lost.
    void withholdNext();

    /// Adds packets of a recent frame that have had their turn, and answers how many. Where the
    /// first one has gone, or is yet to come, a packet that says so is added instead.
    std::uint32_t addAgain(std::uint64_t frameId, std::uint32_t first, std::uint32_t last);

    void flush();

private:
    struct Frame {
        std::uint64_t id;
        std::uint64_t timestamp;
        std::uint32_t next;
    };
    struct Prepared {
        std::array<std::uint8_t, 64> header;
        std::size_t headerSize;
        const std::uint8_t* data;
        std::size_t size;
    };

    void add(const Frame& frame, std::uint32_t packet, protocol::Status status);
    void addUnavailable(std::uint64_t frameId, std::uint32_t packet);
    Prepared& addEmpty();
    std::size_t putHeader(std::uint8_t* at, protocol::Status status, protocol::StreamPacket type,
                          std::uint64_t frameId, std::uint32_t packet) const;
    std::size_t putLeader(std::uint8_t* at, std::uint64_t timestamp) const;
    std::size_t putTrailer(std::uint8_t* at) const;

    bool m_extendedIds;
    const UdpSocket& m_socket;
    sockaddr_in m_destination;
    std::uint32_t m_format;
    std::array<std::uint32_t, 4> m_region;
    std::size_t m_payload;
    std::size_t m_dataSize;
    std::uint32_t m_dataPackets;
    std::vector<std::uint8_t> m_pattern;
    /// The current one is the last, and the few before it can still be asked for.
    std::deque<Frame> m_frames;
    std::vector<Prepared> m_prepared;
};

} // namespace fakecamera
