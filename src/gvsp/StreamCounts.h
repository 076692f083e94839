// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <atomic>
#include <cstdint>

namespace gvsp {

/// What happened to the frames and packets of an acquisition.
template <typename Count> struct StreamCountsOf {
    Count framesComplete{};
    /// Delivered, and not whole or of a wrong size.
    Count framesIncomplete{};
    /// Incomplete ones of which leader and trailer came, and no full packet of data.
    Count framesHollow{};
    /// Frames of which nothing arrived.
    Count framesLost{};
    /// How often one or more frames in a row were lost.
    Count gaps{};
    /// Frames that arrived while no buffer was queued.
    Count framesWithoutBuffer{};
    Count bytes{};
    Count packets{};
    /// Never arrived, of frames of which others did.
    Count packetsMissing{};
    Count packetsRequested{};
    /// Arrived after they had been requested.
    Count packetsResent{};
    Count packetsDuplicate{};
    /// Arrived after their frame had been delivered.
    Count packetsLate{};
    /// Malformed, or of no frame of the stream.
    Count packetsRefused{};
    /// Answers of the camera that it no longer has a requested packet.
    Count packetsUnavailable{};
};

/// Counts at one moment.
struct StreamCounts : StreamCountsOf<std::uint64_t> {
    /// Packets for which the operating system had no room: in the ring of the adapter, counted for
    /// all its streams, or in the socket of the stream.
    std::uint64_t packetsDropped = 0;
    /// How often the ring stopped taking packets as it was full.
    std::uint64_t ringFreezes = 0;
};

/// A count that one thread at a time raises and any thread reads.
class StreamCounter {
public:
    void add(std::uint64_t amount) {
        m_value.store(m_value.load(std::memory_order_relaxed) + amount, std::memory_order_relaxed);
    }
    operator std::uint64_t() const { return m_value.load(std::memory_order_relaxed); }

private:
    std::atomic<std::uint64_t> m_value{0};
};

/// Counts while they are raised.
struct StreamCounters : StreamCountsOf<StreamCounter> {
    StreamCounts now() const {
        StreamCounts counts;
        static_cast<StreamCountsOf<std::uint64_t>&>(counts) = {framesComplete,
                                                               framesIncomplete,
                                                               framesHollow,
                                                               framesLost,
                                                               gaps,
                                                               framesWithoutBuffer,
                                                               bytes,
                                                               packets,
                                                               packetsMissing,
                                                               packetsRequested,
                                                               packetsResent,
                                                               packetsDuplicate,
                                                               packetsLate,
                                                               packetsRefused,
                                                               packetsUnavailable};
        return counts;
    }
};

} // namespace gvsp
