// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureNode.h"

#include <cstdint>
#include <optional>

namespace orv::aravis {

/// What decides how fast a GigE camera sends packets.
struct PacingSettings {
    /// Bytes of a packet with its IP, UDP and GVSP headers (GevSCPSPacketSize).
    std::int64_t packetBytes = 0;
    /// Ticks of a second (GevTimestampTickFrequency).
    std::int64_t ticksPerSecond = 0;
    /// Bytes per second of the camera's link, or of a faster one behind it.
    std::int64_t linkSpeed = 0;
    /// Range of the packet delay in ticks (GevSCPD).
    IntegerLimits delay;
};

/// Throughput limits of a GigE camera that are made of its packet delay. The camera inserts the
/// delay between the end of a packet and the start of the next (GenICam SFNC, GevSCPD), so that a
/// packet takes its own time on the link and the delay. Limits are in bytes per second and count
/// whole packets with their headers; delays are in ticks.
///
/// The limits are a grid that ends at the speed of the link, at which there is no delay. Its
/// increment is more than one step of the delay changes, so that every limit has a delay of its
/// own. Reentrant.
class PacketPacing {
public:
    /// Nothing when no limit can be made: for a size, frequency or speed of 0, an empty range, or
    /// ticks so long that there would be one limit only.
    static std::optional<PacketPacing> of(const PacingSettings& settings);

    /// The limits that can be set.
    IntegerLimits limits() const;
    /// The shortest delay at which the camera does not exceed \p limit; the longest when none does.
    std::int64_t delayFor(std::int64_t limit) const;
    /// The lowest limit that the camera does not exceed with \p delay.
    std::int64_t limitOf(std::int64_t delay) const;
    /// Most frames per second with \p delay. The last packet of a frame counts as a full one, and
    /// so do leader and trailer, so that the camera may be slightly faster. \p payload is in bytes.
    double framesPerSecond(std::int64_t delay, std::int64_t payload) const;

private:
    explicit PacketPacing(const PacingSettings& settings);
    double bytesPerSecond(std::int64_t delay) const;
    /// The lowest limit of the grid, below the maximum, that is not below \p bytesPerSecond.
    std::int64_t limitAtOrAbove(double bytesPerSecond) const;

    PacingSettings m_settings;
    std::int64_t m_increment;
};

} // namespace orv::aravis
