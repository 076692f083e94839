// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/SimulatedHostUsbTree.h"

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <utility>

namespace host {

namespace {

using Kind = SimulatedUsbNode::Kind;

constexpr std::uint64_t fullSpeed = 12'000'000;
constexpr std::uint64_t highSpeed = 480'000'000;
constexpr std::uint64_t superSpeed = 5'000'000'000;

/// A node's device instance is its position in the list, counted from 1.
DeviceInstance instanceAt(std::size_t position) {
    return static_cast<DeviceInstance>(position + 1);
}

PortConnection connectionAt(std::uint64_t bitsPerSecond) {
    if (bitsPerSecond == 0)
        return {};
    // Like a hub driver, reports super speed as high speed here; flagsAt() shows the difference.
    const int speed = bitsPerSecond >= highSpeed ? 2 : bitsPerSecond >= fullSpeed ? 1 : 0;
    // Hub drivers do not tell faster speeds apart.
    return {1, static_cast<std::uint8_t>(speed), bitsPerSecond > superSpeed ? bitsPerSecond : 0};
}

std::uint32_t flagsAt(std::uint64_t bitsPerSecond) {
    if (bitsPerSecond > superSpeed)
        return 0b1111;
    return bitsPerSecond == superSpeed ? 0b0011 : 0;
}

class SimulatedUsbHub : public UsbHub {
public:
    SimulatedUsbHub(const std::vector<SimulatedUsbNode>& nodes, int position)
        : m_nodes(nodes), m_position(position) {}

    std::optional<PortConnection> connection(std::uint32_t port) override {
        return connectionAt(bitsPerSecond(port));
    }

    std::optional<std::uint32_t> connectionFlagsV2(std::uint32_t port) override {
        return flagsAt(bitsPerSecond(port));
    }

private:
    /// 0 of a port to which nothing is connected.
    std::uint64_t bitsPerSecond(std::uint32_t port) const {
        const auto child =
            std::find_if(m_nodes.begin(), m_nodes.end(), [&](const SimulatedUsbNode& node) {
                return node.parent == m_position && node.port == port;
            });
        return child == m_nodes.end() ? 0 : child->bitsPerSecond;
    }

    const std::vector<SimulatedUsbNode>& m_nodes;
    const int m_position;
};

} // namespace

SimulatedHostUsbTree::SimulatedHostUsbTree(std::vector<SimulatedUsbNode> nodes)
    : m_nodes(std::move(nodes)) {}

std::vector<DeviceInterface> SimulatedHostUsbTree::hubs() {
    return nodesOf(Kind::Hub);
}

std::vector<DeviceInterface> SimulatedHostUsbTree::devices() {
    return nodesOf(Kind::Device);
}

std::optional<DeviceInstance> SimulatedHostUsbTree::parent(DeviceInstance instance) {
    const SimulatedUsbNode* child = node(instance);
    if (child == nullptr || child->parent < 0)
        return std::nullopt;
    return instanceAt(static_cast<std::size_t>(child->parent));
}

std::string SimulatedHostUsbTree::instanceId(DeviceInstance instance) {
    const SimulatedUsbNode* found = node(instance);
    return found == nullptr ? std::string() : found->instanceId;
}

Property<std::u16string> SimulatedHostUsbTree::locationInfo(DeviceInstance instance) {
    const SimulatedUsbNode* found = node(instance);
    if (found == nullptr)
        return {noSuchDevice, {}};
    if (found->port == 0)
        return {noSuchValue, {}};
    std::ostringstream text;
    text << std::setfill('0') << "Port_#" << std::setw(4) << found->port << ".Hub_#" << std::setw(4)
         << found->parent;
    const std::string location = text.str();
    return {0, {location.begin(), location.end()}};
}

Property<std::uint32_t> SimulatedHostUsbTree::busNumber(DeviceInstance instance) {
    const SimulatedUsbNode* found = controller(instance);
    return found == nullptr ? Property<std::uint32_t>{noSuchValue, 0}
                            : Property<std::uint32_t>{0, found->busNumber};
}

Property<std::uint32_t> SimulatedHostUsbTree::address(DeviceInstance instance) {
    const SimulatedUsbNode* found = controller(instance);
    return found == nullptr ? Property<std::uint32_t>{noSuchValue, 0}
                            : Property<std::uint32_t>{0, found->pciAddress};
}

std::unique_ptr<UsbHub> SimulatedHostUsbTree::openHub(const std::string& path) {
    const auto hub =
        std::find_if(m_nodes.begin(), m_nodes.end(), [&path](const SimulatedUsbNode& each) {
            return each.kind == Kind::Hub && each.path == path;
        });
    if (hub == m_nodes.end())
        return nullptr;
    return std::make_unique<SimulatedUsbHub>(m_nodes, static_cast<int>(hub - m_nodes.begin()));
}

std::vector<DeviceInterface> SimulatedHostUsbTree::nodesOf(Kind kind) const {
    std::vector<DeviceInterface> found;
    for (std::size_t position = 0; position < m_nodes.size(); ++position) {
        const SimulatedUsbNode& each = m_nodes[position];
        if (each.kind == kind)
            found.push_back({each.path, instanceAt(position), each.instanceId});
    }
    return found;
}

const SimulatedUsbNode* SimulatedHostUsbTree::node(DeviceInstance instance) const {
    return instance == 0 || instance > m_nodes.size() ? nullptr : &m_nodes[instance - 1];
}

const SimulatedUsbNode* SimulatedHostUsbTree::controller(DeviceInstance instance) const {
    const SimulatedUsbNode* found = node(instance);
    return found != nullptr && found->kind == Kind::Controller ? found : nullptr;
}

} // namespace host
