// SPDX-License-Identifier: BSD-3-Clause
#include "losses/FrameCounter.h"

#include "sdk/OrvFrameWrapper.h"

namespace {

constexpr auto relaxed = std::memory_order_relaxed;

/// Single writer: load + store avoids a locked add.
void add(std::atomic<std::uint64_t>& counter, std::uint64_t amount) {
    counter.store(counter.load(relaxed) + amount, relaxed);
}

} // namespace

std::int32_t firstFrameIdOf(OrvTransportLayerType type) {
    return type == OrvTransportLayerTypeGEV ? 1 : 0;
}

FrameCounter::FrameCounter(std::int32_t firstFrameId) : m_frameIdBase(firstFrameId - 1) {}

void FrameCounter::count(const OrvFrameWrapper& frame) {
    add(m_counters.received, 1);
    countStatus(frame);
    std::uint32_t bufferSize = 0;
    if (frame.GetBufferSize(bufferSize) == OrvErrorSuccess)
        add(m_counters.payloadBytes, bufferSize);
    countFrameId(frame);
}

void FrameCounter::countStatus(const OrvFrameWrapper& frame) {
    OrvFrameStatusType status = OrvFrameStatusComplete;
    if (frame.GetReceiveStatus(status) != OrvErrorSuccess)
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

void FrameCounter::countFrameId(const OrvFrameWrapper& frame) {
    // Unsigned, so that no ID that a camera may send overflows.
    const std::uint64_t received = m_counters.received.load(relaxed);
    std::uint64_t id = 0;
    const bool known = frame.GetFrameID(id) == OrvErrorSuccess;
    // An unreadable ID counts as the next one: the number of lost frames stays the same.
    const std::uint64_t relativeId =
        known ? id - static_cast<std::uint64_t>(static_cast<std::int64_t>(m_frameIdBase))
              : static_cast<std::uint64_t>(m_counters.lost.load(relaxed)) + received;
    m_counters.lastFrameId.store(static_cast<std::int64_t>(relativeId), relaxed);
    m_counters.lost.store(static_cast<std::int64_t>(relativeId - received), relaxed);
}

FrameStatistics FrameCounter::statistics() const {
    FrameStatistics result;
    result.receivedFrames = m_counters.received.load(relaxed);
    result.completeFrames = m_counters.complete.load(relaxed);
    result.incompleteFrames = m_counters.incomplete.load(relaxed);
    result.invalidFrames = m_counters.invalid.load(relaxed);
    result.tooSmallFrames = m_counters.tooSmall.load(relaxed);
    result.lastFrameId = m_counters.lastFrameId.load(relaxed);
    result.lostFrames = m_counters.lost.load(relaxed);
    result.payloadBytes = m_counters.payloadBytes.load(relaxed);
    return result;
}

void FrameCounter::reset() {
    m_counters.received.store(0, relaxed);
    m_counters.complete.store(0, relaxed);
    m_counters.incomplete.store(0, relaxed);
    m_counters.invalid.store(0, relaxed);
    m_counters.tooSmall.store(0, relaxed);
    m_counters.lastFrameId.store(0, relaxed);
    m_counters.lost.store(0, relaxed);
    m_counters.payloadBytes.store(0, relaxed);
}
