// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/PacketPacing.h"

#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace orv::aravis {

struct CameraRecord;
struct FeatureDescription;
class FeatureCatalogue;

/// A throughput limit for a GigE camera that has none of its own, made of its packet delay
/// (GevSCPD), packet size (GevSCPSPacketSize) and tick frequency (GevTimestampTickFrequency); see
/// PacketPacing. Asks the camera at each call, so that it follows what others write. On the
/// device's thread only.
class DelayLimit {
public:
    /// Null for a camera that has a limit, lacks one of the features, or tells no link speed while
    /// that of the network adapter is unknown, too.
    static std::shared_ptr<DelayLimit> make(const FeatureCatalogue& features,
                                            const CameraRecord& record);

    /// Success when the limit (when only the switch) can be written now.
    OrvErrorType admitsWriting() const;
    OrvErrorType admitsSwitching() const;
    OrvErrorType limits(IntegerLimits& limits) const;
    /// Bytes per second; while the limit is off, those that hold once it is on again.
    OrvErrorType get(std::int64_t& limit) const;
    /// OrvErrorInvalidValue for a limit that is not in the grid. A limit that was read when the
    /// camera was opened gets the very delay that the camera had.
    OrvErrorType set(std::int64_t limit);
    /// Off: the camera has its shortest delay.
    OrvErrorType isOn(bool& on) const;
    OrvErrorType switchTo(bool on);
    /// The frame rate that the camera reports, or the lower one that the delay allows. Cameras
    /// without a limit report a rate that does not depend on the delay.
    OrvErrorType frameRate(double& framesPerSecond) const;
    bool hasFrameRate() const { return m_frameRate && m_payload; }
    /// Keeps the limit after the packet size may have changed: writes another delay. After an
    /// error, the next call tries it again.
    OrvErrorType followPacketSize();
    /// After a write that may have changed the delay: it belongs to the present packet size.
    OrvErrorType noteDelay();

private:
    using Description = std::shared_ptr<const FeatureDescription>;
    /// A delay and the packet size that it was meant for.
    struct Delay {
        std::int64_t ticks = 0;
        std::int64_t packetBytes = 0;
    };

    DelayLimit() = default;
    OrvErrorType readSettings(PacingSettings& settings) const;
    OrvErrorType pacing(std::optional<PacketPacing>& found) const;
    OrvErrorType readDelay(std::int64_t& ticks) const;
    OrvErrorType shortestDelay(std::int64_t& ticks) const;
    OrvErrorType delayFor(std::int64_t limit, std::int64_t& ticks) const;
    OrvErrorType writeDelay(std::int64_t ticks);
    OrvErrorType tryToFollow();

    Description m_delay;
    Description m_packetSize;
    /// Null for a camera that lacks them.
    Description m_frameRate;
    Description m_payload;
    std::int64_t m_ticksPerSecond = 0;
    std::int64_t m_linkSpeed = 0;
    /// As found when the camera was opened.
    Delay m_found;
    /// For which the delay was written or found.
    std::int64_t m_packetBytes = 0;
    /// The delay to which switching on returns; nothing while the limit is on.
    std::optional<std::int64_t> m_whenOn;
};

} // namespace orv::aravis
