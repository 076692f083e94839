// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Frame.h"
#include "losses/FrameCounter.h"
#include "sdk/OrvFrameWrapper.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace viewer {

/// Counts the frames of a camera, and passes the latest from the SDK's thread to the GUI thread. A
/// frame that was not taken before the next one came is given back to the camera.
///
/// Thread-safe; the SDK delivers one frame at a time. No lock is held while a frame is given back
/// or announced.
class FrameMailbox : public OrvCPP::IFrameObserver {
public:
    using GiveBack = std::function<void(const std::shared_ptr<OrvCPP::Frame>&)>;

    /// \p firstFrameId is the ID of an acquisition's first frame. \p giveBack hands a frame back to
    /// the camera. \p announce is called on the SDK's thread for the first frame after construction
    /// and for the first one after each take().
    FrameMailbox(std::int32_t firstFrameId, GiveBack giveBack, std::function<void()> announce);

    void FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) override;

    /// The latest frame, which the caller must give back; empty when there is none.
    std::shared_ptr<OrvCPP::Frame> take();
    /// Of the frames since the mailbox was made, those given back included; without the frame rate.
    FrameStatistics statistics() const;

private:
    const GiveBack m_giveBack;
    const std::function<void()> m_announce;
    FrameCounter m_counter;
    /// Used on the SDK's thread only.
    OrvFrameWrapper m_counted;
    /// Guards m_latest and m_isAnnounced.
    std::mutex m_mutex;
    std::shared_ptr<OrvCPP::Frame> m_latest;
    bool m_isAnnounced = false;
};

} // namespace viewer
