// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>

namespace OrvCPP {
class OrvSystem;
}
class SystemController;

/// A controller of a system's cameras on the host they hang on, simulated cameras on the host of
/// their scenario. \p system must outlive it.
std::shared_ptr<SystemController> makeSystemController(OrvCPP::OrvSystem& system);
