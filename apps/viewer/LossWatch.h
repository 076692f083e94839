// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "losses/LossEvidence.h"

#include <QString>

#include <deque>
#include <string>

namespace viewer {

/// Says where frames of a streaming camera were lost lately. Judges the time of the last few looks
/// only, in which other traffic of the adapter hides little. Bound to the GUI thread.
class LossWatch {
public:
    /// Losses are shown, and judged together, for so many looks.
    static constexpr std::size_t looks = 5;

    /// Begins now. \p interface is its name for commands. Counters of this host's network are not
    /// read for a simulated camera.
    LossWatch(std::string interface, ObservedCamera camera, bool isSimulated);

    /// Call it every few seconds. Returns at which place frames were lost or damaged, what shows it
    /// and what to do; empty when none was in the last looks. Reads some features of the stream and
    /// counters of the host, and does not wait.
    const QString& look();

private:
    void beginPeriod();
    QString findings(LossEvidence& period) const;

    const std::string m_interface;
    const ObservedCamera m_camera;
    const bool m_isSimulated;
    /// From the last looks until now, the longest first.
    std::deque<LossEvidence> m_periods;
    QString m_text;
};

} // namespace viewer
