// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>

namespace OrvCPP {
class ISimulation;
class OrvSystem;
} // namespace OrvCPP

/// The camera SDK, started with simulated cameras; shut down in the end. Construction throws
/// std::runtime_error when the SDK does not start.
class SimulatedCameras {
public:
    /// Equal GigE cameras, all on one network adapter that carries them, with bandwidth limits far
    /// above their needs. Every call takes them \p callDelayMicroseconds. Each has \p extraFeatures
    /// beyond the usual ones.
    explicit SimulatedCameras(int count, int callDelayMicroseconds = 0, int extraFeatures = 0);
    /// A scenario file, or the name of one of the SDK's own.
    explicit SimulatedCameras(const QString& scenario);
    ~SimulatedCameras();

    SimulatedCameras(const SimulatedCameras&) = delete;
    SimulatedCameras& operator=(const SimulatedCameras&) = delete;

    OrvCPP::OrvSystem& system() const;
    /// Counts the calls into the SDK, and can make them fail.
    OrvCPP::ISimulation& simulation() const;
};
