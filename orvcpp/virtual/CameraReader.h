// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/json/ObjectReader.h"
#include "orvcpp/virtual/Scenario.h"

namespace orv::sim {

/// Reads one element of a scenario's "cameras" and adds the camera, or the several equal ones that
/// it stands for. The scenario's interfaces are read already. Throws a FormatError.
void readCamera(ObjectReader reader, Scenario& scenario, std::uint32_t seed);

} // namespace orv::sim
