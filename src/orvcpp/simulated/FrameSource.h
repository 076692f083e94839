// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Frame.h"
#include "orvcpp/simulated/Pattern.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
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

class FrameSource;

/// One of an acquisition's frames. Its fields are written by the link's thread while the receiver
/// does not own the frame, so the queries need no lock.
class SimulatedFrame final : public OrvCPP::Frame {
public:
    SimulatedFrame(std::weak_ptr<FrameSource> source, const Geometry& geometry);

    OrvErrorType GetReceiveStatus(OrvFrameStatusType& status) const override;
    OrvErrorType GetBufferSize(std::uint32_t& size) const override;
    OrvErrorType GetFrameID(std::uint64_t& id) const override;
    OrvErrorType GetTimestamp(std::uint64_t& nanoseconds) const override;
    OrvErrorType GetImage(const std::uint8_t*& image) const override;
    OrvErrorType GetPixelFormat(OrvPixelFormatType& format) const override;
    OrvErrorType GetWidth(std::uint32_t& width) const override;
    OrvErrorType GetHeight(std::uint32_t& height) const override;

    /// Acquisition that the frame belongs to; empty when that has ended.
    std::shared_ptr<FrameSource> source() const { return m_source.lock(); }

private:
    friend class FrameSource;

    const std::weak_ptr<FrameSource> m_source;
    const Geometry m_geometry;
    std::uint64_t m_id = 0;
    std::uint64_t m_timestamp = 0;
    OrvFrameStatusType m_status = OrvFrameStatusInvalid;
    /// Set by the first GetImage(); keeps the image alive as long as the frame.
    mutable std::shared_ptr<const Pattern> m_pattern;
    /// Guarded by the source's mutex.
    bool m_isQueued = true;
};

/// How an acquisition treats its frames.
struct FrameSourceSettings {
    int bufferCount = 0;
    Geometry geometry;
    std::uint64_t firstId = 0;
    /// Shares of the frames, 0 to 1.
    double lossRate = 0;
    double incompleteRate = 0;
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
