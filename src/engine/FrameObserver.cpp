// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FrameObserver.h"

#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFrameWrapper.h"

#include <chrono>

namespace {

constexpr auto relaxed = std::memory_order_relaxed;

/// Single writer: load + store avoids a locked add.
void add(std::atomic<std::uint64_t>& counter, std::uint64_t amount) {
    counter.store(counter.load(relaxed) + amount, relaxed);
}

std::int64_t nanosecondsNow() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

} // namespace

FrameObserver::FrameObserver(std::shared_ptr<OrvCameraWrapper> camera, std::int32_t firstFrameId,
                             Clock clock)
    : m_clock(clock ? std::move(clock) : Clock(nanosecondsNow)), m_frameIdBase(firstFrameId - 1),
      m_camera(std::move(camera)), m_frame(std::make_shared<OrvFrameWrapper>()) {}

FrameObserver::~FrameObserver() = default;

void FrameObserver::FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) {
    m_frame->GetHandle() = frame;
    add(m_counters.received, 1);
    countStatus();
    std::uint32_t bufferSize = 0;
    if (m_frame->GetBufferSize(bufferSize) == OrvErrorSuccess)
        add(m_counters.payloadBytes, bufferSize);
    countFrameId();
    measureRate();
    // The SDK owns the frame from here on; no reference must outlive a stop.
    m_frame->GetHandle().reset();
    m_camera->QueueFrame(frame);
}

void FrameObserver::countStatus() {
    OrvFrameStatusType status = OrvFrameStatusComplete;
    if (m_frame->GetReceiveStatus(status) != OrvErrorSuccess)
        return;
    switch (status) {
    case OrvFrameStatusComplete:
        add(m_counters.complete, 1);
        break;
    case OrvFrameStatusIncomplete:
        add(m_counters.incomplete, 1);
        break;
    case OrvFrameStatusTooSmall:
        add(m_counters.tooSmall, 1);
        break;
    case OrvFrameStatusInvalid:
        add(m_counters.invalid, 1);
        break;
    default:
        break;
    }
}

void FrameObserver::countFrameId() {
    // Unsigned, so that no ID that a camera may send overflows.
    const std::uint64_t received = m_counters.received.load(relaxed);
    std::uint64_t id = 0;
    const bool known = m_frame->GetFrameID(id) == OrvErrorSuccess;
    // An unreadable ID counts as the next one: the number of lost frames stays the same.
    const std::uint64_t relativeId =
        known ? id - static_cast<std::uint64_t>(static_cast<std::int64_t>(m_frameIdBase))
              : static_cast<std::uint64_t>(m_counters.lost.load(relaxed)) + received;
    m_counters.lastFrameId.store(static_cast<std::int64_t>(relativeId), relaxed);
    m_counters.lost.store(static_cast<std::int64_t>(relativeId - received), relaxed);
}

void FrameObserver::measureRate() {
    const std::int64_t now = m_clock();
    m_currentNanoseconds.store(now, relaxed);
    const std::int64_t microseconds = (now - m_previousNanoseconds.load(relaxed)) / 1000;
    if (microseconds >= 1)
        m_lastFramesPerSecond.store(1'000'000.0 / static_cast<double>(microseconds), relaxed);
    m_counters.framesPerSecond.store(m_lastFramesPerSecond.load(relaxed), relaxed);
    m_previousNanoseconds.store(now, relaxed);
}

FrameStatistics FrameObserver::statistics() const {
    FrameStatistics result;
    result.receivedFrames = m_counters.received.load(relaxed);
    result.completeFrames = m_counters.complete.load(relaxed);
    result.incompleteFrames = m_counters.incomplete.load(relaxed);
    result.invalidFrames = m_counters.invalid.load(relaxed);
    result.tooSmallFrames = m_counters.tooSmall.load(relaxed);
    result.lastFrameId = m_counters.lastFrameId.load(relaxed);
    result.lostFrames = m_counters.lost.load(relaxed);
    result.payloadBytes = m_counters.payloadBytes.load(relaxed);
    result.framesPerSecond = m_counters.framesPerSecond.load(relaxed);
    return result;
}

void FrameObserver::reset() {
    m_counters.received.store(0, relaxed);
    m_counters.complete.store(0, relaxed);
    m_counters.incomplete.store(0, relaxed);
    m_counters.invalid.store(0, relaxed);
    m_counters.tooSmall.store(0, relaxed);
    m_counters.lastFrameId.store(0, relaxed);
    m_counters.lost.store(0, relaxed);
    m_counters.payloadBytes.store(0, relaxed);
    m_counters.framesPerSecond.store(0.0, relaxed);
    m_lastFramesPerSecond.store(0.0, relaxed);
    m_previousNanoseconds.store(0, relaxed);
    m_currentNanoseconds.store(0, relaxed);
}
