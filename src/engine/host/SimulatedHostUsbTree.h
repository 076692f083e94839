// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostUsbTree.h"
#include "sdk/SimulatedHost.h"

namespace host {

/// The USB tree of a simulated host. Ports report what a hub driver
/// reports, and the rate of speeds above 5 Gbit/s, which hub drivers do not tell apart.
/// Immutable, thus safe to use from any thread; its hubs must not outlive it.
class SimulatedHostUsbTree : public HostUsbTree {
public:
    explicit SimulatedHostUsbTree(std::vector<SimulatedUsbNode> nodes);

    std::vector<DeviceInterface> hubs() override;
    std::vector<DeviceInterface> devices() override;
    std::optional<DeviceInstance> parent(DeviceInstance instance) override;
    std::string instanceId(DeviceInstance instance) override;
    Property<std::u16string> locationInfo(DeviceInstance instance) override;
    Property<std::uint32_t> busNumber(DeviceInstance instance) override;
    Property<std::uint32_t> address(DeviceInstance instance) override;
    std::unique_ptr<UsbHub> openHub(const std::string& path) override;

private:
    std::vector<DeviceInterface> nodesOf(SimulatedUsbNode::Kind kind) const;
    const SimulatedUsbNode* node(DeviceInstance instance) const;
    const SimulatedUsbNode* controller(DeviceInstance instance) const;

    const std::vector<SimulatedUsbNode> m_nodes;
};

} // namespace host
