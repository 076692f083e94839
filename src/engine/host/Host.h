// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sdk/SimulatedHost.h"

#include <memory>

namespace host {

class HostNetwork;
class HostUsbTree;

/// Adapters of a simulated host, followed by the operating system's own.
std::shared_ptr<HostNetwork> makeNetwork(const SimulatedHost& simulated);

/// USB tree of a simulated host, followed by the operating system's own.
std::shared_ptr<HostUsbTree> makeUsbTree(const SimulatedHost& simulated);

} // namespace host
