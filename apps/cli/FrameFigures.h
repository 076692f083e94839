// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "losses/FrameStatistics.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cstdint>
#include <optional>

namespace cli {

/// What was counted of a camera's stream since the stream began.
struct CameraCounts {
    FrameStatistics frames;
    /// Packets that the camera has sent again, and packets that never arrived. Empty where the
    /// stream does not count them.
    std::optional<std::int64_t> packetsResent;
    std::optional<std::int64_t> packetsMissing;
};

/// The figures of a camera as JSON: the counts of \p until, and rates, which are averages of the
/// \p seconds since \p since. "lossPercent" is the share of lost and incomplete frames in all that
/// were sent; it is absent while no frame is known to be sent.
QJsonObject cameraFigures(const CameraCounts& since, const CameraCounts& until, double seconds);

/// The sums of such figures in \p rows, with the "lossPercent" of all. Rows without figures count
/// as 0.
QJsonObject totalFigures(const QJsonArray& rows);

/// Adds "linkPercent", the share of the payload's rate in the link's speed. Does nothing when the
/// speed is 0, which is unknown, or the figures have no rate.
void addLinkShare(QJsonObject& figures, double bitsPerSecond);

} // namespace cli
