// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/HostEvidence.h"
#include "engine/CameraList.h"
#include "sdk/SimulatedHost.h"

#include <vector>

class SystemController;

namespace doctor {

/// Reads limits, packet sizes and speeds of the cameras, which SystemController::enumerate() has
/// opened; writes nothing. \p simulated tells what simulated cameras send to others. Bound to the
/// thread of the cameras.
std::vector<LinkEvidence> readLinks(const SystemController& controller,
                                    const std::vector<CameraList>& interfaces,
                                    const SimulatedHost& simulated);

} // namespace doctor
