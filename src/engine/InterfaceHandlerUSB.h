// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostUsbTree.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// The host's USB controllers with cameras, and the highest link speed of these cameras. Finds the
/// maker's cameras; where the host reports USB interface classes, every USB3 Vision camera.
/// Bound to the GUI thread. Owned through a shared pointer made with the class itself, so its
/// destructor is not virtual.
class InterfaceHandlerUSB {
public:
    /// The default is the operating system's tree.
    explicit InterfaceHandlerUSB(host::HostUsbTrees trees = {host::makeSystemUsbTree()});

    /// Reads the host's USB tree again. A camera of which something cannot be read is logged and
    /// left out.
    void rebuild();
    /// Bits per second of the controller whose PCI location ("bus-device-function", decimal)
    /// occurs in the interface ID; nothing when there is none.
    virtual std::optional<std::uint64_t> GetSpeed(const std::string& interfaceId) const;
    /// PCI location of the controller that the interface ID names; empty when there is none.
    std::string controllerKey(const std::string& interfaceId) const;

private:
    /// Device instance ID of a hub to its device interface path.
    using HubPaths = std::map<std::string, std::string>;

    void addCameras(host::HostUsbTree& tree);
    void addCamera(host::HostUsbTree& tree, const host::DeviceInterface& camera,
                   const HubPaths& hubPaths);

    const host::HostUsbTrees m_trees;
    /// PCI location of a controller to the highest speed of the cameras behind it.
    std::map<std::string, std::uint64_t> m_controllers;
};
