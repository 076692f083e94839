// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/HostEvidence.h"
#include "engine/CameraList.h"

#include <vector>

class SystemController;

namespace doctor {

/// An interface's cameras, at least one, and what they send to others in bytes per second, as far
/// as that is known.
struct InterfaceCameras {
    CameraList cameras;
    double otherTraffic = 0;
};

/// Reads limits, packet sizes and speeds of the cameras, which SystemController::enumerate() has
/// opened; writes nothing. Interfaces that share a link give one entry. Bound to the thread of the
/// cameras.
std::vector<LinkEvidence> readLinks(const SystemController& controller,
                                    const std::vector<InterfaceCameras>& interfaces);

} // namespace doctor
