// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Cameras.h"
#include "cli/FrameFigures.h"
#include "losses/LossEvidence.h"

#include <QJsonObject>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace cli {

/// Streams from the open cameras of an interface until stop() or its destruction, counts what
/// arrives, and notices cameras that are disconnected meanwhile. Bound to one thread.
class StreamingCameras {
public:
    /// \p adjustsPacketSize: GigE cameras negotiate their largest packet size before. No counters
    /// of this host are read where the cameras are simulated.
    StreamingCameras(SystemController& controller, const HostInterface& interface,
                     bool adjustsPacketSize, bool areSimulated);
    ~StreamingCameras();

    StreamingCameras(const StreamingCameras&) = delete;
    StreamingCameras& operator=(const StreamingCameras&) = delete;

    /// Whether no camera streams.
    bool isEmpty() const;

    /// Looks for cameras that were disconnected: reads a feature of each camera of which no frame
    /// has arrived for half a second. Call it more often than that. Blocks for at most 0.1 s and
    /// the time of one answer; cameras that were not asked are the first ones of the next call.
    void findDisconnected();

    /// Seconds from the start to the last figures.
    double seconds() const;
    /// "interface", "cameras" and "total". Rates are averages since the interval before.
    QJsonObject interval();
    /// Counts a last time and ends the streams.
    void stop();
    /// The same members as in interval() and "findings", after stop(). Rates are averages of the
    /// whole time. A camera that has stopped to send, without being triggered, has "silentSeconds",
    /// the time from its last frame to the end. Asks all cameras whether they are still there,
    /// since stopping does not report it.
    QJsonObject result();

private:
    using Clock = std::chrono::steady_clock;

    struct Stream {
        std::shared_ptr<CameraHandler> camera;
        bool isStarted = false;
        CameraCounts counts;
        /// How many frames of it have come, when the last one was seen, and when the camera last
        /// sent one or answered.
        std::uint64_t frames = 0;
        Clock::time_point lastFrame;
        Clock::time_point lastSign;
        std::optional<double> disconnectedAfterSeconds;
    };
    /// What was counted for each stream at a point in time.
    struct Counts {
        Clock::time_point time;
        std::vector<CameraCounts> streams;
    };

    Counts count();
    /// Notes which cameras have sent since the last call. One that was taken for disconnected and
    /// sends again counts as connected.
    void noteFrames(Clock::time_point now);
    void ask(Stream& stream, Clock::time_point now);
    /// Seconds from one frame of a camera to the next, of one that has sent a frame.
    double usualPeriod(const Stream& stream) const;
    /// The time since the last frame of a camera that should have sent another one.
    std::optional<double> silentSeconds(const Stream& stream) const;
    QJsonArray withSilence(const QJsonArray& rows) const;
    QJsonObject figures(const Counts& since, const Counts& until) const;

    SystemController& m_controller;
    const HostInterface& m_interface;
    const double m_bitsPerSecond;
    LossEvidence m_evidence;
    std::vector<Stream> m_streams;
    Counts m_first;
    Counts m_last;
    std::size_t m_nextAsked = 0;
    bool m_isStopped = false;
};

} // namespace cli
