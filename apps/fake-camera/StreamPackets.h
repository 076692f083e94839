// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "fake-camera/CameraRegisters.h"
#include "fake-camera/Protocol.h"

#include <netinet/in.h>

#include <array>
#include <cstdint>
#include <deque>
#include <random>
#include <vector>

namespace platform {
class UdpSocket;
}

namespace fakecamera {

/// Makes and sends the packets of an acquisition's frames: packet 0 is the leader, the last one the
/// trailer, those between carry the image. The image is a ramp that moves from frame to frame: byte
/// i of frame f is pattern(i + f % 256), so no frame is computed or copied. A frame of several
/// parts (multi-part payload) has the same bytes: each part is an image of some of the lines.
class StreamPackets {
public:
    /// Takes size, format, packet size and destination from the registers, and whether routers and
    /// adapters may split packets. \p parts of a frame, at most 4; 0: an image without parts.
    /// \p lossPercent of the packets are lost.
    StreamPackets(const CameraRegisters& registers, bool extendedIds, std::uint32_t parts,
                  std::uint32_t lossPercent, const platform::UdpSocket& socket);

    /// Number of packets of a frame, with leader and trailer.
    std::uint32_t count() const { return m_dataPackets + 2; }
    /// Image bytes in a packet: none in leader and trailer.
    std::size_t imageBytes(std::uint32_t packet) const;

    /// Starts a frame: its number, and its moment in nanoseconds.
    void begin(std::uint64_t frameId, std::uint64_t timestamp);
    /// The frame's next packet, and whether there is none left.
    std::uint32_t next() const { return m_frames.back().next; }
    bool isDone() const { return next() == count(); }
    /// Adds the next packet to those that the next call of flush() sends.
    void addNext();
    /// Skips the next packet, as if it had been lost.
    void dropNext();

    /// Adds packets of a recent frame that were sent or dropped before; returns how many. When
    /// the first one is too old or not sent yet, adds one packet with the status "unavailable".
    std::uint32_t addAgain(std::uint64_t frameId, std::uint32_t first, std::uint32_t last);

    /// Sends all packets that were added, but for those that are lost at random.
    void flush();

private:
    struct Frame {
        std::uint64_t id;
        std::uint64_t timestamp;
        std::uint32_t next;
    };
    /// Lines of the image that are a part of the frame, and the packets that carry them.
    struct Part {
        std::uint32_t firstLine;
        std::uint32_t lines;
        std::size_t offset;
        std::size_t size;
        std::uint32_t firstPacket;
    };
    struct Prepared {
        std::array<std::uint8_t, 256> header;
        std::size_t headerSize;
        const std::uint8_t* data;
        std::size_t size;
    };

    void divide(std::uint32_t parts);
    const Part& partOf(std::uint32_t packet) const;
    void add(const Frame& frame, std::uint32_t packet, protocol::Status status);
    void addUnavailable(std::uint64_t frameId, std::uint32_t packet);
    Prepared& addEmpty();
    std::size_t putHeader(std::uint8_t* at, protocol::Status status, protocol::StreamPacket type,
                          std::uint64_t frameId, std::uint32_t packet) const;
    std::size_t putLeader(std::uint8_t* at, std::uint64_t timestamp) const;
    void putRegion(std::uint8_t* at, const Part& part) const;
    std::size_t putDataHeader(std::uint8_t* at, std::uint32_t packet) const;
    std::size_t putTrailer(std::uint8_t* at) const;

    bool m_extendedIds;
    bool m_isMultiPart;
    std::uint32_t m_lossPercent;
    /// Seeded with a constant: a loss can be repeated.
    std::minstd_rand m_random;
    const platform::UdpSocket& m_socket;
    sockaddr_in m_destination;
    std::uint32_t m_format;
    std::array<std::uint32_t, 4> m_region;
    std::size_t m_payload;
    std::size_t m_dataSize;
    std::uint32_t m_dataPackets = 0;
    /// One for a frame without parts.
    std::vector<Part> m_parts;
    std::vector<std::uint8_t> m_pattern;
    /// The last one is the current frame; the others can still be resent.
    std::deque<Frame> m_frames;
    std::vector<Prepared> m_prepared;
};

} // namespace fakecamera
