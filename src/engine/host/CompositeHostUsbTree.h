// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostUsbTree.h"
#include "engine/host/MergedNumbers.h"

namespace host {

/// Several USB trees as one, in their order. Device instances are its own, since those of different
/// trees may be alike. Reentrant.
class CompositeHostUsbTree : public HostUsbTree {
public:
    /// None of \p trees is empty.
    explicit CompositeHostUsbTree(std::vector<std::shared_ptr<HostUsbTree>> trees);

    std::vector<DeviceInterface> hubs() override;
    std::vector<DeviceInterface> devices() override;
    std::optional<DeviceInstance> parent(DeviceInstance instance) override;
    std::string instanceId(DeviceInstance instance) override;
    Property<std::u16string> locationInfo(DeviceInstance instance) override;
    Property<std::uint32_t> busNumber(DeviceInstance instance) override;
    Property<std::uint32_t> address(DeviceInstance instance) override;
    /// Asks the trees in turn until one opens the path.
    std::unique_ptr<UsbHub> openHub(const std::string& path) override;

private:
    using Listing = std::vector<DeviceInterface> (HostUsbTree::*)();

    std::vector<DeviceInterface> merged(Listing listing);
    template <typename T>
    Property<T> property(Property<T> (HostUsbTree::*query)(DeviceInstance),
                         DeviceInstance instance) const;

    const std::vector<std::shared_ptr<HostUsbTree>> m_trees;
    MergedNumbers m_instances;
};

} // namespace host
