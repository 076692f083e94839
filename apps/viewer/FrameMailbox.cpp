// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/FrameMailbox.h"

#include <utility>

namespace viewer {

FrameMailbox::FrameMailbox(GiveBack giveBack, std::function<void()> announce)
    : m_giveBack(std::move(giveBack)), m_announce(std::move(announce)) {}

void FrameMailbox::FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) {
    m_receivedFrames.fetch_add(1, std::memory_order_relaxed);
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

std::uint64_t FrameMailbox::receivedFrames() const {
    return m_receivedFrames.load(std::memory_order_relaxed);
}

} // namespace viewer
