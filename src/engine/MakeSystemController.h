// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>

namespace OrvCPP {
class OrvSystem;
}
class SystemController;

/// Makes a controller of a system's cameras, with the speeds of this host or, for simulated
/// cameras, of their scenario's host. \p system must outlive it. Bound to the GUI thread.
std::shared_ptr<SystemController> makeSystemController(OrvCPP::OrvSystem& system);
