// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>

namespace OrvCPP {
class OrvSystem;
}

/// How many of the system's cameras are real ones, not simulated.
struct RealCameras {
    std::size_t gige = 0;
    std::size_t usb = 0;
    /// Whether USB cameras are looked for, found or not.
    bool areUsbSought = false;
};

/// Counts the cameras that are there at the moment.
RealCameras realCameras(OrvCPP::OrvSystem& system);

/// Whether a started system simulates its cameras, and has no transport layer of real ones.
bool simulatesAll(OrvCPP::OrvSystem& system);
