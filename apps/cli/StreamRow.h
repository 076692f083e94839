// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "losses/LossAnalysis.h"
#include "observer/StreamFigures.h"

#include <QJsonObject>

#include <chrono>
#include <string>

namespace cli {

/// A stream that was seen, between two readings.
struct SeenStream {
    observer::StreamFigures since;
    observer::StreamFigures until;
    observer::FrameTiming timing;
    /// Since its last data.
    std::chrono::duration<double> silence{0};
    /// Whether its packets have numbers, so that missing ones are counted.
    bool hasNumberedPackets = true;
};

/// Adds the figures to the row of a camera (docs/schemas/benchmark.json); rates are averages of the
/// \p seconds. The speed of the link in bits per second is 0 where it is unknown. Reentrant.
void addFigures(QJsonObject& row, const SeenStream& stream, double seconds, double bitsPerSecond);

/// What the frames of a stream tell of losses. Reentrant.
CameraEvidence frameEvidence(const std::string& id, const observer::StreamFigures& figures);

} // namespace cli
