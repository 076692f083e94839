// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace host {
class HostUsbTree;
struct DeviceInterface;
} // namespace host

/// The host's USB controllers to which cameras are attached (the maker's; of any maker where the
/// host tells USB3 Vision cameras from other devices), and the speeds at which they run. Bound to
/// the GUI thread. Owned through shared pointers, which know what they made: so that the destructor
/// need not be virtual.
class InterfaceHandlerUSB {
public:
    /// An empty \p tree is replaced by the operating system's.
    explicit InterfaceHandlerUSB(std::shared_ptr<host::HostUsbTree> tree = {});

    /// Looks at the host's USB tree anew. What cannot be found out of a camera is logged and leaves
    /// that camera out.
    void rebuild();
    /// Bits per second of the controller whose PCI location ("bus-device-function", decimal)
    /// occurs in the interface ID; nothing when there is none.
    virtual std::optional<std::uint64_t> GetSpeed(const std::string& interfaceId) const;

private:
    /// Device instance ID of a hub to its device interface path.
    using HubPaths = std::map<std::string, std::string>;

    void addCamera(const host::DeviceInterface& camera, const HubPaths& hubPaths);
    std::optional<std::string> controllerOf(std::uint32_t instance) const;
    std::optional<std::uint64_t> portSpeed(const host::DeviceInterface& camera,
                                           const std::string& hubPath, std::uint32_t port) const;

    std::shared_ptr<host::HostUsbTree> m_tree;
    /// PCI location of a controller to the highest speed of the cameras behind it.
    std::map<std::string, std::uint64_t> m_controllers;
};
