// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "losses/FrameStatistics.h"
#include "losses/LossAnalysis.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class FeatureController;

/// A camera whose losses are to be explained.
struct ObservedCamera {
    std::string id;
    bool isUsb = false;
    /// Of the open camera; never empty.
    std::shared_ptr<FeatureController> features;
    /// What was counted of its frames; nothing while it does not stream.
    std::function<std::optional<FrameStatistics>()> frames;
    /// Whether it waits for triggers; asked while no frame comes. Empty: it does not.
    std::function<bool()> isTriggered;
};

/// Collects what findLosses() judges, of one interface, while its cameras stream. Asks the streams
/// and the operating system, and a camera only for the speed of its USB link, and while no frame
/// comes, whether it waits for triggers. Bound to the thread of the cameras.
class LossEvidence {
public:
    static constexpr std::chrono::milliseconds usualDrain{500};

    /// Reads the counters of the host. Make it before the cameras start, or call startFromNow().
    /// \p name is that of the interface. Counters of this host's network are not read for simulated
    /// cameras.
    LossEvidence(std::string name, std::vector<ObservedCamera> cameras, bool areSimulated);

    /// Notes what adapter and streams have received so far. Call it once the cameras stream. Blocks
    /// for 50 ms where both can be read, longer while packets wait for this program, at most for
    /// \p longestDrain.
    void noteStart(std::chrono::milliseconds longestDrain = usualDrain);
    /// In place of noteStart(), for cameras that stream already: leaves out what was counted so
    /// far. Does not block.
    void startFromNow();
    /// Whether frames were lost or came incomplete since the start. Asks nothing but the cameras'
    /// frame counts.
    bool hasBadFrames() const;
    /// Reads the counters again, before the cameras stop. Blocks for up to \p longestDrain while
    /// packets wait for this program; those still waiting then count as received by the adapter
    /// only.
    void noteEnd(std::chrono::milliseconds longestDrain = usualDrain);
    /// What findLosses() takes; valid after noteEnd(). The memory for USB is left unknown.
    const InterfaceEvidence& evidence() const { return m_evidence; }

private:
    struct Camera {
        ObservedCamera observed;
        /// What was counted before the start, and is left out.
        FrameStatistics framesBefore;
        std::optional<CameraEvidence> streamBefore;
    };

    /// How many more packets the adapter has received since it exists than the streams since they
    /// began: only a difference of two such numbers means something. Nothing where one is unknown.
    std::optional<std::int64_t> surplusNow() const;
    /// Waits for \p expected, or where nothing is expected, until it falls no more.
    std::optional<std::int64_t> leastSurplus(std::optional<std::int64_t> expected,
                                             std::chrono::milliseconds longestDrain) const;

    std::vector<Camera> m_cameras;
    InterfaceEvidence m_evidence;
    platform::NetworkCounters m_before;
    std::optional<std::int64_t> m_surplusAtStart;
};
