// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Frame.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace viewer {

/// Passes the latest frame of a camera from the SDK's thread to the GUI thread. A frame that was
/// not taken before the next one came is given back to the camera.
///
/// Thread-safe. No lock is held while a frame is given back or announced.
class FrameMailbox : public OrvCPP::IFrameObserver {
public:
    using GiveBack = std::function<void(const std::shared_ptr<OrvCPP::Frame>&)>;

    /// \p giveBack hands a frame back to the camera. \p announce is called on the SDK's thread for
    /// the first frame after construction and for the first one after each take().
    FrameMailbox(GiveBack giveBack, std::function<void()> announce);

    void FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) override;

    /// The latest frame, which the caller must give back; empty when there is none.
    std::shared_ptr<OrvCPP::Frame> take();
    /// Frames received since the mailbox was made, dropped ones included.
    std::uint64_t receivedFrames() const;

private:
    const GiveBack m_giveBack;
    const std::function<void()> m_announce;
    std::atomic<std::uint64_t> m_receivedFrames{0};
    /// Guards m_latest and m_isAnnounced.
    std::mutex m_mutex;
    std::shared_ptr<OrvCPP::Frame> m_latest;
    bool m_isAnnounced = false;
};

} // namespace viewer
