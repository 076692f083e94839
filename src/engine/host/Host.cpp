// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/Host.h"

#include "engine/host/SimulatedHostNetwork.h"
#include "engine/host/SimulatedHostUsbTree.h"

namespace host {

HostNetworks makeNetworks(const SimulatedHost& simulated) {
    HostNetworks networks{makeSystemNetwork()};
    if (!simulated.adapters.empty())
        networks.insert(networks.begin(),
                        std::make_shared<SimulatedHostNetwork>(simulated.adapters));
    return networks;
}

HostUsbTrees makeUsbTrees(const SimulatedHost& simulated) {
    HostUsbTrees trees{makeSystemUsbTree()};
    if (!simulated.usbNodes.empty())
        trees.insert(trees.begin(), std::make_shared<SimulatedHostUsbTree>(simulated.usbNodes));
    return trees;
}

} // namespace host
