// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvSimulation/Simulation.h"
#include "orvcpp/simulated/Scenario.h"

namespace orv::simulated {

/// The adapters and USB devices of the scenario's host, as its operating system would list them. A
/// USB camera is a device with vendor ID 4D52 and product ID 0001.
OrvCPP::SimulatedHost buildHost(const Scenario& scenario);

} // namespace orv::simulated
