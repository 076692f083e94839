// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostUsbTree.h"

#include <map>

/// What a hub driver answers for a port; nothing where the request fails.
struct FakeUsbPort {
    std::optional<host::PortConnection> connection;
    std::optional<std::uint32_t> flags;
};

struct FakeUsbNode {
    enum class Kind { Other, Hub, Device };

    Kind kind = Kind::Other;
    std::string instanceId;
    /// 0: none.
    host::DeviceInstance parent = 0;
    std::string path;
    host::Property<std::u16string> location;
    host::Property<std::uint32_t> busNumber;
    host::Property<std::uint32_t> address;
    /// Hubs only.
    bool opens = true;
    std::map<std::uint32_t, FakeUsbPort> ports;
};

/// A host's USB tree as plain data. A node's device instance is its position, counted from 1.
class FakeHostUsbTree : public host::HostUsbTree {
public:
    using Kind = FakeUsbNode::Kind;

    host::DeviceInstance add(FakeUsbNode node) {
        m_nodes.push_back(std::move(node));
        return static_cast<host::DeviceInstance>(m_nodes.size());
    }
    FakeUsbNode& at(host::DeviceInstance instance) { return m_nodes.at(instance - 1); }

    std::vector<host::DeviceInterface> hubs() override { return nodesOf(Kind::Hub); }
    std::vector<host::DeviceInterface> devices() override {
        ++looks;
        return nodesOf(Kind::Device);
    }
    std::optional<host::DeviceInstance> parent(host::DeviceInstance instance) override {
        const host::DeviceInstance above = at(instance).parent;
        return above == 0 ? std::nullopt : std::optional(above);
    }
    std::string instanceId(host::DeviceInstance instance) override {
        return at(instance).instanceId;
    }
    host::Property<std::u16string> locationInfo(host::DeviceInstance instance) override {
        return at(instance).location;
    }
    host::Property<std::uint32_t> busNumber(host::DeviceInstance instance) override {
        return at(instance).busNumber;
    }
    host::Property<std::uint32_t> address(host::DeviceInstance instance) override {
        return at(instance).address;
    }
    std::unique_ptr<host::UsbHub> openHub(const std::string& path) override {
        for (const FakeUsbNode& node : m_nodes) {
            if (node.kind == Kind::Hub && node.path == path && node.opens)
                return std::make_unique<Hub>(node.ports);
        }
        return nullptr;
    }

    int looks = 0;

private:
    class Hub : public host::UsbHub {
    public:
        explicit Hub(std::map<std::uint32_t, FakeUsbPort> ports) : m_ports(std::move(ports)) {}
        std::optional<host::PortConnection> connection(std::uint32_t port) override {
            return m_ports[port].connection;
        }
        std::optional<std::uint32_t> connectionFlagsV2(std::uint32_t port) override {
            return m_ports[port].flags;
        }

    private:
        std::map<std::uint32_t, FakeUsbPort> m_ports;
    };

    std::vector<host::DeviceInterface> nodesOf(Kind kind) const {
        std::vector<host::DeviceInterface> found;
        for (std::size_t position = 0; position < m_nodes.size(); ++position) {
            const FakeUsbNode& node = m_nodes[position];
            if (node.kind == kind)
                found.push_back(
                    {node.path, static_cast<host::DeviceInstance>(position + 1), node.instanceId});
        }
        return found;
    }

    std::vector<FakeUsbNode> m_nodes;
};
