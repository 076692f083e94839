// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/simulated/Scenario.h"

namespace orv::simulated {

/// Reads one element of a scenario's "cameras" and adds its camera, or as many equal ones as its
/// "count". Requires the scenario's interfaces. Throws a FormatError.
void readCamera(ObjectReader reader, Scenario& scenario, std::uint32_t seed);

} // namespace orv::simulated
