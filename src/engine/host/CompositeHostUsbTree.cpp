// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/CompositeHostUsbTree.h"

#include <utility>

namespace host {

CompositeHostUsbTree::CompositeHostUsbTree(std::vector<std::shared_ptr<HostUsbTree>> trees)
    : m_trees(std::move(trees)) {}

std::vector<DeviceInterface> CompositeHostUsbTree::hubs() {
    return merged(&HostUsbTree::hubs);
}

std::vector<DeviceInterface> CompositeHostUsbTree::devices() {
    return merged(&HostUsbTree::devices);
}

std::optional<DeviceInstance> CompositeHostUsbTree::parent(DeviceInstance instance) {
    const auto origin = m_instances.origin(instance);
    if (!origin)
        return std::nullopt;
    const auto above = m_trees[origin->source]->parent(origin->number);
    if (!above)
        return std::nullopt;
    return m_instances.merged(origin->source, *above);
}

std::string CompositeHostUsbTree::instanceId(DeviceInstance instance) {
    const auto origin = m_instances.origin(instance);
    return origin ? m_trees[origin->source]->instanceId(origin->number) : std::string();
}

Property<std::u16string> CompositeHostUsbTree::locationInfo(DeviceInstance instance) {
    return property(&HostUsbTree::locationInfo, instance);
}

Property<std::uint32_t> CompositeHostUsbTree::busNumber(DeviceInstance instance) {
    return property(&HostUsbTree::busNumber, instance);
}

Property<std::uint32_t> CompositeHostUsbTree::address(DeviceInstance instance) {
    return property(&HostUsbTree::address, instance);
}

std::unique_ptr<UsbHub> CompositeHostUsbTree::openHub(const std::string& path) {
    for (const auto& tree : m_trees) {
        if (auto hub = tree->openHub(path))
            return hub;
    }
    return nullptr;
}

std::vector<DeviceInterface> CompositeHostUsbTree::merged(Listing listing) {
    std::vector<DeviceInterface> all;
    for (std::size_t source = 0; source < m_trees.size(); ++source) {
        for (DeviceInterface& each : (*m_trees[source].*listing)()) {
            each.instance = m_instances.merged(source, each.instance);
            all.push_back(std::move(each));
        }
    }
    return all;
}

template <typename T>
Property<T> CompositeHostUsbTree::property(Property<T> (HostUsbTree::*query)(DeviceInstance),
                                           DeviceInstance instance) const {
    const auto origin = m_instances.origin(instance);
    if (!origin)
        return {noSuchDevice, {}};
    return (*m_trees[origin->source].*query)(origin->number);
}

} // namespace host
