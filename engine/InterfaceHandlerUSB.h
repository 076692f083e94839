// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace host {
class HostUsbTree;
}

/// The host's USB controllers to which the maker's cameras are attached, and the speeds at which
/// they run. Bound to the GUI thread.
class InterfaceHandlerUSB {
public:
    /// An empty \p tree is replaced by the operating system's.
    explicit InterfaceHandlerUSB(std::shared_ptr<host::HostUsbTree> tree = {});

    /// Looks at the host's USB tree anew.
    void rebuild();
    /// Bits per second of the controller whose PCI location ("bus-device-function", decimal)
    /// occurs in the interface ID; nothing when there is none.
    virtual std::optional<std::uint64_t> GetSpeed(const std::string& interfaceId) const;

private:
    std::shared_ptr<host::HostUsbTree> m_tree;
    std::map<std::string, std::uint64_t> m_controllers;
};
