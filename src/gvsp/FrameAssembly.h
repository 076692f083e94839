// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/Block.h"
#include "gvsp/BlockNumbers.h"
#include "gvsp/StreamCounts.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <optional>
#include <vector>

namespace gvsp {

/// Packets to be requested from the camera.
struct ResendRequest {
    std::uint64_t block = 0;
    bool hasExtendedIds = false;
    PacketRange packets;
};

/// Makes frames of the packets of a GigE camera's stream. Packets may come in any order, twice, or
/// not at all, and may hold anything. Each frame is delivered once, in the order of the camera,
/// with numbers that count on from 1; missing packets are requested again. Not thread-safe.
class FrameAssembly {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// What the assembly needs; called within packet() and advance().
    class Output {
    public:
        virtual ~Output() = default;
        /// A frame to be filled; null when none is free.
        virtual std::shared_ptr<FrameBuffer> takeFrame() = 0;
        virtual void deliver(std::shared_ptr<FrameBuffer> frame) = 0;
        virtual void request(const ResendRequest& request) = 0;
    };

    struct Settings {
        /// Bytes of a frame and of a packet, as the camera tells them.
        std::size_t payload = 0;
        std::size_t packetSize = 0;
        /// Ticks per second of the camera's clock; 0 for a camera without one.
        std::uint64_t tickFrequency = 0;
        /// Missing packets are requested; false for a camera that does not send them again.
        bool canRequest = true;
        /// The camera's last block ID of the acquisition before, where it is known.
        std::optional<std::uint64_t> previousId;
        /// Another program requests, so that any number of packets may still come.
        bool isWatching = false;
    };

    FrameAssembly(const Settings& settings, Output& output, StreamCounters& counters);

    /// A datagram of the stream, as readPacket() takes it.
    void packet(const std::uint8_t* bytes, std::size_t captured, std::size_t size, Time now);
    /// The same for a packet that was read. Does not count it or its bytes.
    void packet(const Packet& packet, Time now);
    /// The camera sends blocks of other sizes from now on. Holds for blocks that begin later.
    void setSizes(std::size_t payload, std::size_t packetSize);
    /// Delivers what has waited too long, and requests what is missing. To be called after each
    /// batch of packets, and at due().
    void advance(Time now);
    /// When advance() has something to do even if no packet comes.
    std::optional<Time> due() const;

    /// Number of the newest block, as it is delivered.
    std::uint64_t newestNumber() const { return m_numbers.newest(); }
    /// The camera's ID of the newest block.
    std::optional<std::uint64_t> newestId() const { return m_numbers.newestId(); }

private:
    /// An open block, and when its missing packets are to be requested.
    struct Open {
        Block block;
        /// Empty while nothing is missing.
        std::optional<Time> nextRequest;
        Time lastRequest;
        /// Too many of its packets are missing, or were requested too often.
        bool isHopeless = false;
    };
    /// The first packet of a block: it opens the block when a second one confirms its ID, as a
    /// single packet may be damaged.
    struct Candidate {
        Packet packet;
        /// What the packet points at.
        std::vector<std::uint8_t> data;
        /// Of a leader.
        std::optional<std::uint64_t> timestamp;
        Time time;
    };

    Open* find(std::uint64_t id);
    void take(Open& open, const Packet& packet, Time now);
    void takeUnknown(const Packet& packet, Time now);
    void remember(const Packet& packet, std::optional<std::uint64_t> timestamp, Time now);
    void openBlock(std::uint64_t id, const BlockNumbers::Place& place, Time now);
    std::shared_ptr<FrameBuffer> takeFrame(std::uint64_t number);
    std::size_t mostOpen() const;

    bool isNewest(const Open& open) const;
    bool mayRequest(const Open& open) const;
    /// When the block ends whatever is missing.
    Time end(const Open& open) const;
    void endBlocks(Time now);
    void endFirst();
    /// When the packets behind the last one that came count as missing.
    Time tailDue(const Open& open) const;
    void requestMissing(Open& open, Time now);
    /// A packet has come that was requested this long ago.
    void noteAnswer(Time::duration time);

    const Settings m_settings;
    Output& m_output;
    StreamCounters& m_counters;
    BlockLayout m_layout;
    BlockNumbers m_numbers;
    /// How long answers to requests take; at first a guess.
    Time::duration m_answerTime = std::chrono::milliseconds(7);
    /// In the order of their numbers.
    std::list<Open> m_open;
    std::deque<Candidate> m_candidates;
};

} // namespace gvsp
