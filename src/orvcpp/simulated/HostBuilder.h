// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvSimulation/Simulation.h"
#include "orvcpp/simulated/Scenario.h"

namespace orv::simulated {

/// What the operating system of the scenario's host would tell of its adapters and USB devices.
/// A USB camera is a device with vendor ID 4D52 and product ID 0001.
OrvCPP::SimulatedHost buildHost(const Scenario& scenario);

} // namespace orv::simulated
