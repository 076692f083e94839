// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FrameObserver.h"

#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFrameWrapper.h"

#include <chrono>

namespace {

constexpr auto relaxed = std::memory_order_relaxed;

std::int64_t nanosecondsNow() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

} // namespace

FrameObserver::FrameObserver(std::shared_ptr<OrvCameraWrapper> camera, std::int32_t firstFrameId,
                             Clock clock)
    : m_clock(clock ? std::move(clock) : Clock(nanosecondsNow)), m_counter(firstFrameId),
      m_camera(std::move(camera)), m_frame(std::make_shared<OrvFrameWrapper>()) {}

FrameObserver::~FrameObserver() = default;

void FrameObserver::FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) {
    m_frame->GetHandle() = frame;
    m_counter.count(*m_frame);
    measureRate();
    // The SDK owns the frame from here on; no reference must outlive a stop.
    m_frame->GetHandle().reset();
    m_camera->QueueFrame(frame);
}

void FrameObserver::measureRate() {
    const std::int64_t now = m_clock();
    m_currentNanoseconds.store(now, relaxed);
    const std::int64_t microseconds = (now - m_previousNanoseconds.load(relaxed)) / 1000;
    if (microseconds >= 1)
        m_lastFramesPerSecond.store(1'000'000.0 / static_cast<double>(microseconds), relaxed);
    m_framesPerSecond.store(m_lastFramesPerSecond.load(relaxed), relaxed);
    m_previousNanoseconds.store(now, relaxed);
}

FrameStatistics FrameObserver::statistics() const {
    FrameStatistics result = m_counter.statistics();
    result.framesPerSecond = m_framesPerSecond.load(relaxed);
    return result;
}

void FrameObserver::reset() {
    m_counter.reset();
    m_framesPerSecond.store(0.0, relaxed);
    m_lastFramesPerSecond.store(0.0, relaxed);
    m_previousNanoseconds.store(0, relaxed);
    m_currentNanoseconds.store(0, relaxed);
}
