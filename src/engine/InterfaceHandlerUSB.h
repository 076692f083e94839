// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostUsbTree.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// USB controllers with cameras, and the speeds at which these run: the maker's cameras, and those
/// of any maker where the host tells USB3 Vision cameras from other devices. Bound to the GUI
/// thread. The destructor is not virtual: shared pointers own the objects and delete the type they
/// made.
class InterfaceHandlerUSB {
public:
    /// The default is the operating system's tree.
    explicit InterfaceHandlerUSB(host::HostUsbTrees trees = {host::makeSystemUsbTree()});

    /// Reads the USB trees anew. A camera whose port or speed is not found is logged and left out.
    void rebuild();
    /// Bits per second of the controller whose PCI location ("bus-device-function", decimal)
    /// occurs in the interface ID; nothing when there is none.
    virtual std::optional<std::uint64_t> GetSpeed(const std::string& interfaceId) const;

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
