// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerUSB.h"

#include "engine/host/HostUsbTree.h"
#include "engine/host/UsbTopology.h"
#include "logging/Log.h"

#include <algorithm>
#include <utility>

namespace {

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

void logMissingProperty(const char* name, std::uint32_t result, host::DeviceInstance instance) {
    logDebug(std::string("Cannot get ") + name + ". CM_Get_DevNode_PropertyW ret: " +
             std::to_string(result) + " devInst: " + std::to_string(instance));
}

} // namespace

InterfaceHandlerUSB::InterfaceHandlerUSB(std::shared_ptr<host::HostUsbTree> tree)
    : m_tree(tree ? std::move(tree) : host::makeSystemUsbTree()) {}

void InterfaceHandlerUSB::rebuild() {
    m_controllers.clear();
    HubPaths hubPaths;
    for (const host::DeviceInterface& hub : m_tree->hubs())
        hubPaths.emplace(hub.instanceId, hub.path);
    for (const host::DeviceInterface& device : m_tree->devices()) {
        if (host::isCamera(host::parseDevicePath(device.path), device.interfaceClasses))
            addCamera(device, hubPaths);
    }
}

std::optional<std::uint64_t> InterfaceHandlerUSB::GetSpeed(const std::string& interfaceId) const {
    const auto found =
        std::find_if(m_controllers.begin(), m_controllers.end(), [&](const auto& controller) {
            return interfaceId.find(controller.first) != std::string::npos;
        });
    if (found == m_controllers.end())
        return std::nullopt;
    return found->second;
}

void InterfaceHandlerUSB::addCamera(const host::DeviceInterface& camera, const HubPaths& hubPaths) {
    const auto port = host::portNumber(m_tree->locationInfo(camera.instance).value);
    if (!port) {
        logDebug("Cannot get port location for device " + quoted(camera.path));
        return;
    }
    const auto hub = m_tree->parent(camera.instance);
    if (!hub)
        return;
    const auto controller = controllerOf(*hub);
    if (!controller)
        return;
    const auto hubPath = hubPaths.find(m_tree->instanceId(*hub));
    const auto speed =
        portSpeed(camera, hubPath == hubPaths.end() ? std::string() : hubPath->second, *port);
    if (!speed)
        return;
    std::uint64_t& known = m_controllers[*controller];
    known = std::max(known, *speed);
}

/// Key of the host controller above a hub; nothing when there is none or its PCI location cannot be
/// read.
std::optional<std::string> InterfaceHandlerUSB::controllerOf(std::uint32_t instance) const {
    std::optional<host::DeviceInstance> ancestor = instance;
    while (ancestor && !host::isOnPciBus(m_tree->instanceId(*ancestor)))
        ancestor = m_tree->parent(*ancestor);
    if (!ancestor)
        return std::nullopt;

    const auto bus = m_tree->busNumber(*ancestor);
    if (bus.result != 0) {
        logMissingProperty("DEVPKEY_Device_BusNumber", bus.result, *ancestor);
        return std::nullopt;
    }
    const auto address = m_tree->address(*ancestor);
    if (address.result != 0) {
        logMissingProperty("DEVPKEY_Device_Address", address.result, *ancestor);
        return std::nullopt;
    }
    return host::controllerKey(bus.value, address.value);
}

/// Bits per second at which a camera's port runs; nothing when \p hubPath is empty.
std::optional<std::uint64_t> InterfaceHandlerUSB::portSpeed(const host::DeviceInterface& camera,
                                                            const std::string& hubPath,
                                                            std::uint32_t port) const {
    const auto hub = hubPath.empty() ? nullptr : m_tree->openHub(hubPath);
    if (!hub) {
        logDebug("Could not get USB speed for device " + quoted(camera.path));
        return std::nullopt;
    }
    const auto connection = hub->connection(port);
    if (!connection)
        return std::nullopt;
    return host::bitsPerSecond(*connection, hub->connectionFlagsV2(port));
}
