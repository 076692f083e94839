// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraList.h"
#include "engine/LossAnalysis.h"

#include <cstdint>
#include <optional>
#include <string>

class CameraHandler;

/// Collects what findLosses() judges, of one interface, while its cameras stream. Asks the streams
/// and the operating system, and a camera only for the speed of its USB link, and while no frame
/// comes, whether it waits for triggers. Bound to the thread of the cameras.
class LossEvidence {
public:
    /// Reads the counters of the host. Make it before the cameras start. \p name is that of the
    /// interface. Counters of this host's network are not read for simulated cameras.
    LossEvidence(std::string name, CameraList cameras, bool areSimulated);

    /// Notes what adapter and streams have received so far. Call it once the cameras stream.
    void noteStart();
    /// Reads the counters again, before the cameras stop. Blocks for up to 0.5 s while packets wait
    /// for this program.
    void noteEnd();
    /// What findLosses() takes; valid after noteEnd(). The memory for USB is left unknown.
    const InterfaceEvidence& evidence() const { return m_evidence; }

private:
    /// How many more packets the adapter has received since it exists than the streams since they
    /// began: only a difference of two such numbers means something. Nothing where one is unknown.
    std::optional<std::int64_t> surplusNow() const;
    std::optional<std::int64_t> leastSurplus(std::int64_t expected) const;
    void describe(CameraEvidence& evidence, const CameraHandler& camera) const;

    const CameraList m_cameras;
    InterfaceEvidence m_evidence;
    platform::NetworkCounters m_before;
    std::optional<std::int64_t> m_surplusAtStart;
};
