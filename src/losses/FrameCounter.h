// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"
#include "losses/FrameStatistics.h"
#include "sdk/WrapperDeclarations.h"

#include <atomic>
#include <cstdint>

/// The ID that a camera gives the first frame of an acquisition: 1 on GigE Vision, else 0.
std::int32_t firstFrameIdOf(OrvTransportLayerType type);

/// Counts the frames of one camera by their status, and those that were lost by gaps in their IDs.
///
/// Thread-safe: one thread at a time counts; statistics() reads from any thread without a lock.
/// Call reset() while no acquisition runs: a frame that arrives during the call may restore its
/// counts.
class FrameCounter {
public:
    explicit FrameCounter(std::int32_t firstFrameId);

    /// Allocates nothing and takes no lock.
    void count(const OrvFrameWrapper& frame);
    /// Without the frame rate.
    FrameStatistics statistics() const;
    void reset();

private:
    struct Counters {
        std::atomic<std::uint64_t> received{0};
        std::atomic<std::uint64_t> complete{0};
        std::atomic<std::uint64_t> incomplete{0};
        std::atomic<std::uint64_t> invalid{0};
        std::atomic<std::uint64_t> tooSmall{0};
        std::atomic<std::int64_t> lastFrameId{0};
        std::atomic<std::int64_t> lost{0};
        std::atomic<std::uint64_t> payloadBytes{0};
    };

    void countStatus(const OrvFrameWrapper& frame);
    void countFrameId(const OrvFrameWrapper& frame);

    Counters m_counters;
    const std::int32_t m_frameIdBase;
};
