// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/FrameSource.h"

#include <utility>

namespace orv::simulated {

namespace {
/// Spreads neighbouring seeds: small seeds would give small first numbers.
constexpr std::uint32_t spread = 2654435761U;
} // namespace

void StreamStatistics::reset() {
    for (auto* count : {&sent, &delivered, &incomplete, &dropped, &underrun, &bytes})
        count->store(0);
}

FrameSource::FrameSource(const FrameSourceSettings& settings,
                         std::shared_ptr<OrvCPP::IFrameObserver> observer,
                         std::shared_ptr<StreamStatistics> statistics,
                         std::shared_ptr<PatternStore> patterns)
    : m_settings(settings), m_observer(std::move(observer)), m_statistics(std::move(statistics)),
      m_patterns(std::move(patterns)), m_nextId(settings.firstId),
      m_random(settings.seed * spread) {}

void FrameSource::announceFrames() {
    m_statistics->reset();
    m_free.reserve(static_cast<std::size_t>(m_settings.bufferCount));
    for (int i = 0; i < m_settings.bufferCount; ++i)
        m_free.push_back(std::make_shared<SimulatedFrame>(weak_from_this(), m_settings.geometry));
}

bool FrameSource::happens(double rate) {
    // Drawn for every frame, so that one fault's rate does not shift another's sequence.
    const auto drawn = static_cast<double>(m_random() - std::minstd_rand::min());
    return drawn < rate * static_cast<double>(std::minstd_rand::max());
}

void FrameSource::send(Transmission transmission, std::uint64_t nanoseconds) {
    if (m_settings.frameCount && m_statistics->sent >= *m_settings.frameCount)
        return;
    const std::uint64_t id = m_nextId++;
    ++m_statistics->sent;
    const bool lost = happens(m_settings.lossRate) || transmission == Transmission::Lost;
    const bool damaged =
        happens(m_settings.incompleteRate) || transmission == Transmission::Damaged;
    if (lost) {
        ++m_statistics->dropped;
        return;
    }
    const std::shared_ptr<SimulatedFrame> frame = takeFree();
    if (!frame) {
        ++m_statistics->underrun;
        return;
    }
    frame->m_id = id;
    frame->m_timestamp = nanoseconds;
    frame->m_status = damaged ? OrvFrameStatusIncomplete : OrvFrameStatusComplete;
    deliver(frame);
}

void FrameSource::deliver(const std::shared_ptr<SimulatedFrame>& frame) {
    ++m_statistics->delivered;
    m_statistics->incomplete += frame->m_status == OrvFrameStatusIncomplete ? 1 : 0;
    m_statistics->bytes += m_settings.geometry.bytes();
    try {
        m_observer->FrameReceived(frame);
    } catch (...) {
        // An exception of a user's callback must not end the thread of the other cameras.
    }
}

void FrameSource::skip(std::int64_t count) {
    m_nextId += static_cast<std::uint64_t>(count);
    m_statistics->sent += count;
    m_statistics->underrun += count;
}

std::shared_ptr<SimulatedFrame> FrameSource::takeFree() {
    const std::lock_guard lock(m_mutex);
    if (m_free.empty())
        return {};
    std::shared_ptr<SimulatedFrame> frame = std::move(m_free.front());
    m_free.erase(m_free.begin());
    frame->m_isQueued = false;
    return frame;
}

OrvErrorType FrameSource::queue(const std::shared_ptr<SimulatedFrame>& frame) {
    const std::lock_guard lock(m_mutex);
    if (frame->m_isQueued)
        return OrvErrorInUse;
    frame->m_isQueued = true;
    m_free.push_back(frame);
    return OrvErrorSuccess;
}

} // namespace orv::simulated
