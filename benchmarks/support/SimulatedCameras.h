// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace OrvCPP {
class ISimulation;
class OrvSystem;
} // namespace OrvCPP

/// The camera SDK, started with equal simulated GigE cameras that answer at once, all on one
/// network adapter; shut down in the end.
class SimulatedCameras {
public:
    /// Throws std::runtime_error when the SDK does not start.
    explicit SimulatedCameras(int count);
    ~SimulatedCameras();

    SimulatedCameras(const SimulatedCameras&) = delete;
    SimulatedCameras& operator=(const SimulatedCameras&) = delete;

    OrvCPP::OrvSystem& system() const;
    /// The grip on the SDK's calls.
    OrvCPP::ISimulation& simulation() const;
};
