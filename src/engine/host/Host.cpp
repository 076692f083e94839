// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/Host.h"

#include "engine/host/CompositeHostNetwork.h"
#include "engine/host/CompositeHostUsbTree.h"
#include "engine/host/SimulatedHostNetwork.h"
#include "engine/host/SimulatedHostUsbTree.h"

namespace host {

std::shared_ptr<HostNetwork> makeNetwork(const SimulatedHost& simulated) {
    if (simulated.adapters.empty())
        return makeSystemNetwork();
    return std::make_shared<CompositeHostNetwork>(std::vector<std::shared_ptr<HostNetwork>>{
        std::make_shared<SimulatedHostNetwork>(simulated.adapters), makeSystemNetwork()});
}

std::shared_ptr<HostUsbTree> makeUsbTree(const SimulatedHost& simulated) {
    if (simulated.usbNodes.empty())
        return makeSystemUsbTree();
    return std::make_shared<CompositeHostUsbTree>(std::vector<std::shared_ptr<HostUsbTree>>{
        std::make_shared<SimulatedHostUsbTree>(simulated.usbNodes), makeSystemUsbTree()});
}

} // namespace host
