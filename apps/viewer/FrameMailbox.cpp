// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/FrameMailbox.h"

#include <utility>

namespace viewer {

FrameMailbox::FrameMailbox(std::int32_t firstFrameId, GiveBack giveBack,
                           std::function<void()> announce)
    : m_giveBack(std::move(giveBack)), m_announce(std::move(announce)), m_counter(firstFrameId) {}

void FrameMailbox::FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) {
    m_counted.GetHandle() = frame;
    m_counter.count(m_counted);
    m_counted.GetHandle().reset();
    std::shared_ptr<OrvCPP::Frame> dropped = frame;
    bool mustAnnounce = false;
    {
        const std::lock_guard lock(m_mutex);
        m_latest.swap(dropped);
        mustAnnounce = !std::exchange(m_isAnnounced, true);
    }
    if (dropped)
        m_giveBack(dropped);
    if (mustAnnounce)
        m_announce();
}

std::shared_ptr<OrvCPP::Frame> FrameMailbox::take() {
    const std::lock_guard lock(m_mutex);
    m_isAnnounced = false;
    return std::exchange(m_latest, nullptr);
}

FrameStatistics FrameMailbox::statistics() const {
    return m_counter.statistics();
}

} // namespace viewer
