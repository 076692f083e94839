// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FramePeriod.h"

void FramePeriod::add(std::int64_t frameId, double seconds) {
    if (m_count == 0) {
        m_firstId = frameId;
        m_firstSeconds = seconds;
    }
    const auto frame = static_cast<double>(frameId - m_firstId);
    const double elapsed = seconds - m_firstSeconds;
    ++m_count;
    m_frames += frame;
    m_seconds += elapsed;
    m_framesSquared += frame * frame;
    m_framesTimesSeconds += frame * elapsed;
}

std::optional<double> FramePeriod::seconds() const {
    const double variance = m_count * m_framesSquared - m_frames * m_frames;
    const double covariance = m_count * m_framesTimesSeconds - m_frames * m_seconds;
    if (!(variance > 0) || !(covariance > 0))
        return std::nullopt;
    return covariance / variance;
}
