// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Frame.h"
#include "losses/FrameCounter.h"
#include "sdk/WrapperDeclarations.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

/// Counts the frames of one camera during a benchmark, and measures their rate.
///
/// Thread-safe: FrameReceived runs on the SDK's threads, one call at a time; statistics() reads
/// from any thread without a lock. Call reset() while no acquisition runs: a frame that arrives
/// during the call may restore its counts.
class FrameObserver : public OrvCPP::IFrameObserver {
public:
    /// Nanoseconds since a fixed time, at least 1 us before the first frame.
    using Clock = std::function<std::int64_t()>;

    /// \p firstFrameId is the ID that the camera gives its first frame. An empty \p clock is
    /// replaced by the steady one.
    FrameObserver(std::shared_ptr<OrvCameraWrapper> camera, std::int32_t firstFrameId,
                  Clock clock = {});
    ~FrameObserver() override;

    FrameObserver(const FrameObserver&) = delete;
    FrameObserver& operator=(const FrameObserver&) = delete;

    void FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) override;

    FrameStatistics statistics() const;
    void reset();

private:
    void measureRate();

    std::atomic<double> m_framesPerSecond{0.0};
    std::atomic<double> m_lastFramesPerSecond{0.0};
    std::atomic<std::int64_t> m_previousNanoseconds{0};
    std::atomic<std::int64_t> m_currentNanoseconds{0};
    const Clock m_clock;
    FrameCounter m_counter;
    const std::shared_ptr<OrvCameraWrapper> m_camera;
    const std::shared_ptr<OrvFrameWrapper> m_frame;
};
