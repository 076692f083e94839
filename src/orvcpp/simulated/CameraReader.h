// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/simulated/Scenario.h"

namespace orv::simulated {

/// Reads one element of a scenario's "cameras" and adds the camera, or the several equal ones that
/// it stands for. The scenario's interfaces are read already. Throws a FormatError.
void readCamera(ObjectReader reader, Scenario& scenario, std::uint32_t seed);

} // namespace orv::simulated
