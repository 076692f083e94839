// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/simulated/Pattern.h"
#include "orvcpp/simulated/SimulatedFrame.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <vector>

namespace orv::simulated {

/// Counts of a stream, from the start of an acquisition. Written by the link's thread.
struct StreamStatistics {
    std::atomic<std::int64_t> sent{0};
    std::atomic<std::int64_t> delivered{0};
    /// Delivered, but damaged.
    std::atomic<std::int64_t> incomplete{0};
    /// Lost on the way.
    std::atomic<std::int64_t> dropped{0};
    /// Arrived when no frame was queued.
    std::atomic<std::int64_t> underrun{0};
    std::atomic<std::int64_t> bytes{0};

    void reset();
};

/// Result of sending a frame over the link.
enum class Transmission { Whole, Damaged, Lost };

/// How an acquisition treats its frames.
struct FrameSourceSettings {
    int bufferCount = 0;
    Geometry geometry;
    std::uint64_t firstId = 0;
    /// Shares of the frames, 0 to 1.
    double lossRate = 0;
    double incompleteRate = 0;
    /// How many frames are sent; nothing for no end.
    std::optional<std::int64_t> frameCount;
    std::uint32_t seed = 0;
};

/// One camera's running acquisition: numbers its frames, fills them and calls the observer.
class FrameSource : public std::enable_shared_from_this<FrameSource> {
public:
    FrameSource(const FrameSourceSettings& settings,
                std::shared_ptr<OrvCPP::IFrameObserver> observer,
                std::shared_ptr<StreamStatistics> statistics,
                std::shared_ptr<PatternStore> patterns);

    /// Makes the frames; to be called once, before anything else.
    void announceFrames();
    /// Sends the next frame. Called on the link's thread only, with no lock held.
    void send(Transmission transmission, std::uint64_t nanoseconds);
    /// Counts \p count frames as sent and lost. Link's thread only.
    void skip(std::int64_t count);
    /// Takes a frame back. Thread-safe, does not wait for a callback.
    OrvErrorType queue(const std::shared_ptr<SimulatedFrame>& frame);

    std::shared_ptr<const Pattern> pattern() const {
        return m_patterns->pattern(m_settings.geometry);
    }

private:
    std::shared_ptr<SimulatedFrame> takeFree();
    bool happens(double rate);
    void deliver(const std::shared_ptr<SimulatedFrame>& frame);

    const FrameSourceSettings m_settings;
    const std::shared_ptr<OrvCPP::IFrameObserver> m_observer;
    const std::shared_ptr<StreamStatistics> m_statistics;
    const std::shared_ptr<PatternStore> m_patterns;
    /// Of the link's thread.
    std::uint64_t m_nextId;
    std::minstd_rand m_random;
    std::mutex m_mutex;
    /// Queued frames, guarded by the mutex. Reserved for all, so that queueing does not allocate.
    std::vector<std::shared_ptr<SimulatedFrame>> m_free;
};

} // namespace orv::simulated
