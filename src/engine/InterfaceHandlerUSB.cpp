// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerUSB.h"

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

/// Key of the host controller above a hub; empty without a controller or its PCI place.
std::optional<std::string> controllerOf(host::HostUsbTree& tree, host::DeviceInstance instance) {
    std::optional<host::DeviceInstance> ancestor = instance;
    while (ancestor && !host::isOnPciBus(tree.instanceId(*ancestor)))
        ancestor = tree.parent(*ancestor);
    if (!ancestor)
        return std::nullopt;

    const auto bus = tree.busNumber(*ancestor);
    if (bus.result != 0) {
        logMissingProperty("DEVPKEY_Device_BusNumber", bus.result, *ancestor);
        return std::nullopt;
    }
    const auto address = tree.address(*ancestor);
    if (address.result != 0) {
        logMissingProperty("DEVPKEY_Device_Address", address.result, *ancestor);
        return std::nullopt;
    }
    return host::controllerKey(bus.value, address.value);
}

/// Bits per second of a camera's port. \p hubPath is empty when the hub is not listed.
std::optional<std::uint64_t> portSpeed(host::HostUsbTree& tree, const host::DeviceInterface& camera,
                                       const std::string& hubPath, std::uint32_t port) {
    const auto hub = hubPath.empty() ? nullptr : tree.openHub(hubPath);
    if (!hub) {
        logDebug("Could not get USB speed for device " + quoted(camera.path));
        return std::nullopt;
    }
    const auto connection = hub->connection(port);
    if (!connection)
        return std::nullopt;
    return host::bitsPerSecond(*connection, hub->connectionFlagsV2(port));
}

} // namespace

InterfaceHandlerUSB::InterfaceHandlerUSB(host::HostUsbTrees trees) : m_trees(std::move(trees)) {}

void InterfaceHandlerUSB::rebuild() {
    m_controllers.clear();
    for (const auto& tree : m_trees)
        addCameras(*tree);
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

std::string InterfaceHandlerUSB::controllerKey(const std::string& interfaceId) const {
    // The longest: "0-20-0" occurs in "10-20-0", too.
    std::string longest;
    for (const auto& [key, speed] : m_controllers) {
        if (key.size() > longest.size() && interfaceId.find(key) != std::string::npos)
            longest = key;
    }
    return longest;
}

void InterfaceHandlerUSB::addCameras(host::HostUsbTree& tree) {
    HubPaths hubPaths;
    for (const host::DeviceInterface& hub : tree.hubs())
        hubPaths.emplace(hub.instanceId, hub.path);
    for (const host::DeviceInterface& device : tree.devices()) {
        if (host::isCamera(host::parseDevicePath(device.path), device.interfaceClasses))
            addCamera(tree, device, hubPaths);
    }
}

void InterfaceHandlerUSB::addCamera(host::HostUsbTree& tree, const host::DeviceInterface& camera,
                                    const HubPaths& hubPaths) {
    const auto port = host::portNumber(tree.locationInfo(camera.instance).value);
    if (!port) {
        logDebug("Cannot get port location for device " + quoted(camera.path));
        return;
    }
    const auto hub = tree.parent(camera.instance);
    if (!hub)
        return;
    const auto controller = controllerOf(tree, *hub);
    if (!controller)
        return;
    const auto hubPath = hubPaths.find(tree.instanceId(*hub));
    const auto speed =
        portSpeed(tree, camera, hubPath == hubPaths.end() ? std::string() : hubPath->second, *port);
    if (!speed)
        return;
    std::uint64_t& known = m_controllers[*controller];
    known = std::max(known, *speed);
}
