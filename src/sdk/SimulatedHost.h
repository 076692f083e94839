// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvSimulation/Simulation.h"

namespace OrvCPP {
class OrvSystem;
}

using SimulatedAdapter = OrvCPP::SimulatedAdapter;
using SimulatedUsbNode = OrvCPP::SimulatedUsbNode;
using SimulatedTraffic = OrvCPP::SimulatedTraffic;
using SimulatedHost = OrvCPP::SimulatedHost;

/// The host on which the system's cameras are simulated; empty for a system of real cameras.
SimulatedHost simulatedHost(const OrvCPP::OrvSystem& system);
