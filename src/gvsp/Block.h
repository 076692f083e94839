// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/FrameBuffer.h"
#include "gvsp/PacketSet.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

namespace gvsp {

/// Sizes that hold for all blocks of an acquisition.
struct BlockLayout {
    /// Bytes of a frame (PayloadSize).
    std::size_t payload = 0;
    /// Bytes of a packet with its IP and UDP headers (GevSCPSPacketSize).
    std::size_t packetSize = 0;
    bool hasExtendedIds = false;

    /// Bytes of a frame in a full packet of Data.
    std::size_t dataSize() const;
    /// Number of packets of a block that fills the payload, with leader and trailer.
    std::size_t packets() const;
    /// The same, where the last packet of each part is not full.
    std::size_t mostPackets() const { return packets() + mostParts - 1; }
};

/// A numbered range of a block's packets; the last one included.
struct PacketRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

/// A block while its packets come in: which ones have, and the frame that holds their data. Not
/// thread-safe.
class Block {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// How a packet was taken.
    enum class Taken { New, Requested, Duplicate, Refused };

    /// \p frame is null when none is free: packets are then noted, and their data dropped.
    Block(const BlockLayout& layout, std::uint64_t id, std::uint64_t number,
          std::shared_ptr<FrameBuffer> frame);

    std::uint64_t id() const { return m_id; }
    std::uint64_t number() const { return m_number; }
    const std::shared_ptr<FrameBuffer>& frame() const { return m_frame; }
    const std::optional<Leader>& leader() const { return m_leader; }
    /// When the last packet came that was not a duplicate.
    Time latest() const { return m_latest; }

    Taken take(const Packet& packet, Time now);
    /// The camera does not have this packet any more, and, when \p withPrevious, none before it.
    void giveUp(std::uint32_t number, bool withPrevious);

    /// All packets from the leader to the trailer have come.
    bool isWhole() const;
    /// Nothing can be added: every packet has come or was given up, or the block is too large.
    bool isSettled() const;
    bool hasTrailer() const { return m_trailer.has_value(); }
    /// One more than the highest number that has come.
    std::uint32_t next() const { return m_next; }
    /// Number of the block's packets: known by its trailer, else that of its parts or of a full
    /// payload.
    std::uint32_t expected() const;
    /// How many packets below \p end have not come.
    std::size_t missing(std::uint32_t end) const { return end - m_arrived.count(); }

    /// Up to \p most ranges of packets below \p end that neither have come nor were given up; adds
    /// them to the requested ones.
    std::vector<PacketRange> request(std::uint32_t end, std::size_t most);
    /// Packets that were requested, each as often as it was.
    std::size_t requested() const { return m_requests; }

    /// What is known of the frame, once the block is over; the timestamp is in the camera's ticks.
    FrameContents contents() const;

private:
    Taken takeLeader(const Packet& packet);
    Taken takeTrailer(const Packet& packet);
    Taken takeData(const Packet& packet);
    bool isMissing(std::uint32_t number) const;

    const BlockLayout m_layout;
    const std::uint64_t m_id;
    const std::uint64_t m_number;
    const std::shared_ptr<FrameBuffer> m_frame;
    PacketSet m_arrived;
    /// Those that have come or were given up.
    PacketSet m_settled;
    /// All below were given up by the camera at once, or have come.
    std::uint32_t m_settledBelow = 0;
    PacketSet m_requested;
    std::size_t m_requests = 0;
    std::optional<Leader> m_leader;
    /// The trailer's number, once it has come.
    std::optional<std::uint32_t> m_trailer;
    std::uint32_t m_next = 0;
    /// Data packets that were not full: a whole block has at most one, its last.
    std::uint32_t m_shortPackets = 0;
    std::uint32_t m_lastShort = 0;
    /// End of the data in the frame.
    std::size_t m_end = 0;
    /// Data went beyond the payload.
    bool m_isClipped = false;
    bool m_isMultiPart = false;
    /// A trailer has come whose number is beyond a full payload.
    bool m_isOverrun = false;
    Time m_latest;
};

} // namespace gvsp
