// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <atomic>
#include <cstdint>

namespace orv::aravis {

/// A count that one thread at a time raises and any thread reads.
class StreamCounter {
public:
    void add(std::uint64_t amount) {
        m_value.store(value() + amount, std::memory_order_relaxed);
    }
    std::uint64_t value() const { return m_value.load(std::memory_order_relaxed); }

private:
    std::atomic<std::uint64_t> m_value{0};
};

/// What happened to the packets and frames of an acquisition.
struct StreamCounters {
    StreamCounter framesComplete;
    /// Delivered, and not whole or of a wrong size.
    StreamCounter framesIncomplete;
    /// Frames of which nothing arrived.
    StreamCounter framesLost;
    /// Frames that arrived while no buffer was queued.
    StreamCounter framesWithoutBuffer;
    StreamCounter bytes;
    StreamCounter packets;
    /// Never arrived, of frames of which others did.
    StreamCounter packetsMissing;
    StreamCounter packetsRequested;
    /// Arrived after they had been requested.
    StreamCounter packetsResent;
    StreamCounter packetsDuplicate;
    /// Arrived after their frame had been delivered.
    StreamCounter packetsLate;
    /// Malformed, or of no frame of the stream.
    StreamCounter packetsRefused;
};

} // namespace orv::aravis
