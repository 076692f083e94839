// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/InterfaceChoice.h"
#include "engine/LinkCalibration.h"

#include <QJsonArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace cli {

class Interruption;

/// How a link is to be calibrated.
struct CalibrationSettings {
    /// Of each step.
    double seconds = 10;
    bool adjustsPacketSize = false;
};

/// What was measured in a step. In bytes per second of the images' data.
struct CalibrationStep {
    double sentBytes = 0;
    double carriedBytes = 0;
    /// What frames add to that which had begun before the step or ended after it.
    double cutBytes = 0;
    /// Lost and incomplete frames.
    double lostFrames = 0;
    /// Packets that had to be sent again; nothing where they are not counted.
    std::optional<double> packetsResent;
    bool hasLoss = false;
};

/// What a link carries.
struct CalibratedLink {
    ChosenInterfaces interfaces;
    /// Why nothing is known; empty otherwise.
    QString error;
    /// Nominal speed; 0 when unknown.
    std::uint64_t bitsPerSecond = 0;
    /// Bytes per second, with what is known to be sent to other applications. Nothing where every
    /// load had a loss.
    std::optional<double> capacity;
    /// The lowest load with a loss; nothing where the cameras cannot fill the link.
    std::optional<double> lossBegins;
    bool isPrecise = false;
    std::vector<CalibrationStep> steps;
    /// Where frames were lost with the lowest such load; see LossFindings.h.
    QJsonArray findings;
    /// IDs of cameras that could not be opened: what they send is not known.
    QStringList notOpened;
};

/// Identifies the link of an interface for SavedCapacities, also after another start of the host.
/// Interfaces of one network adapter have different keys.
QString linkKey(Cameras& cameras, const HostInterface& interface);

/// Measures what a link carries. Puts the limits of its cameras back, whatever happens. Throws a
/// Failure when the program is to end, a camera is disconnected or does not stream, or a limit
/// cannot be written or put back.
CalibratedLink calibrate(Cameras& cameras, const ChosenInterfaces& link,
                         const CalibrationSettings& settings, Interruption& interruption);

} // namespace cli
