// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/SimulatedHost.h"

#include "OrvCPP/OrvSystem.h"

SimulatedHost simulatedHost(const OrvCPP::OrvSystem& system) {
    const auto* simulation = dynamic_cast<const OrvCPP::ISimulation*>(&system);
    return simulation == nullptr ? SimulatedHost{} : simulation->GetHost();
}
