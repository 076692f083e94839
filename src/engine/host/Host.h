// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostNetwork.h"
#include "engine/host/HostUsbTree.h"
#include "sdk/SimulatedHost.h"

namespace host {

/// Adapters of a simulated host, if it has any, followed by the operating system's own.
HostNetworks makeNetworks(const SimulatedHost& simulated);

/// USB tree of a simulated host, if it has one, followed by the operating system's own.
HostUsbTrees makeUsbTrees(const SimulatedHost& simulated);

} // namespace host
