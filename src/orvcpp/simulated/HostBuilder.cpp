// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/HostBuilder.h"

#include <cstdio>
#include <utility>

namespace orv::simulated {

namespace {

using Node = OrvCPP::SimulatedUsbNode;

constexpr const char* hubInterface = "#{F18A0E88-C30C-11D0-8815-00A0C906BED8}";
constexpr const char* deviceInterface = "#{A5DCBF10-6530-11D2-901F-00C04FB951ED}";
constexpr const char* cameraDevice = "VID_4D52&PID_0001";

std::string hexadecimal(std::size_t number) {
    char text[17];
    std::snprintf(text, sizeof text, "%zX", number);
    return text;
}

/// Path under which a device interface is opened, made of the device's instance ID.
std::string pathOf(std::string instanceId, const char* interface) {
    for (char& c : instanceId) {
        if (c == '\\')
            c = '#';
    }
    return "\\\\?\\" + instanceId + interface;
}

class UsbTreeBuilder {
public:
    explicit UsbTreeBuilder(const Scenario& scenario) : m_scenario(scenario) {}

    std::vector<Node> build() {
        for (std::size_t i = 0; i < m_scenario.controllers.size(); ++i)
            addController(i);
        for (const CameraData& camera : m_scenario.cameras) {
            if (m_scenario.interfaces[camera.interface].controller)
                addCamera(camera);
        }
        return std::move(m_nodes);
    }

private:
    int add(Node node) {
        m_nodes.push_back(std::move(node));
        return static_cast<int>(m_nodes.size()) - 1;
    }

    void addController(std::size_t index) {
        const ControllerData& data = m_scenario.controllers[index];
        Node controller;
        controller.kind = Node::Kind::Controller;
        controller.instanceId = "PCI\\VEN_8086&DEV_A36D\\3&11583659&0&" +
                                hexadecimal((data.bus << 8U) | (data.device << 3U) | data.function);
        controller.busNumber = data.bus;
        controller.pciAddress = (data.device << 16U) | data.function;
        controller.bitsPerSecond = data.bitsPerSecond;
        Node root;
        root.kind = Node::Kind::Hub;
        root.parent = add(std::move(controller));
        root.instanceId = "USB\\ROOT_HUB30\\4&2A6B1F" + hexadecimal(index) + "&0&0";
        root.path = pathOf(root.instanceId, hubInterface);
        root.bitsPerSecond = data.bitsPerSecond;
        std::vector<int>& hubs = m_hubs.emplace_back();
        hubs.push_back(add(std::move(root)));
        for (const HubData& hub : data.hubs)
            addHub(index, hub);
    }

    void addHub(std::size_t controller, const HubData& data) {
        std::vector<int>& hubs = m_hubs[controller];
        Node hub;
        hub.kind = Node::Kind::Hub;
        hub.parent = hubs[data.parent ? *data.parent + 1 : 0];
        hub.port = data.port;
        hub.bitsPerSecond = data.bitsPerSecond;
        hub.instanceId = "USB\\VID_2109&PID_0817\\5&" + hexadecimal(controller + 1) + "F00" +
                         hexadecimal(hubs.size()) + "&0&" + std::to_string(data.port);
        hub.path = pathOf(hub.instanceId, hubInterface);
        hubs.push_back(add(std::move(hub)));
    }

    void addCamera(const CameraData& camera) {
        const std::vector<int>& hubs = m_hubs[*m_scenario.interfaces[camera.interface].controller];
        Node device;
        device.kind = Node::Kind::Device;
        device.parent = hubs[camera.hub ? *camera.hub + 1 : 0];
        device.port = camera.port;
        device.bitsPerSecond = camera.linkBitsPerSecond;
        device.instanceId = std::string("USB\\") + cameraDevice + '\\' + camera.serialNumber;
        device.path = pathOf(device.instanceId, deviceInterface);
        add(std::move(device));
    }

    const Scenario& m_scenario;
    std::vector<Node> m_nodes;
    /// Per controller the positions of its hubs in the list, the root hub first.
    std::vector<std::vector<int>> m_hubs;
};

} // namespace

OrvCPP::SimulatedHost buildHost(const Scenario& scenario) {
    OrvCPP::SimulatedHost host;
    for (const AdapterData& data : scenario.adapters) {
        OrvCPP::SimulatedAdapter adapter;
        adapter.index = static_cast<std::uint32_t>(host.adapters.size() + 1);
        adapter.address = data.address;
        adapter.mask = data.mask;
        adapter.bitsPerSecond = data.bitsPerSecond;
        adapter.alias = data.name;
        host.adapters.push_back(std::move(adapter));
    }
    host.usbNodes = UsbTreeBuilder(scenario).build();
    for (const CameraData& camera : scenario.cameras) {
        if (camera.otherTraffic > 0)
            host.otherTraffic.push_back(
                {camera.id, static_cast<std::uint64_t>(camera.otherTraffic)});
    }
    return host;
}

} // namespace orv::simulated
