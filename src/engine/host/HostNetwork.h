// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace host {

/// One row of the host's IPv4 address table. Addresses are in network byte order.
struct AddressRow {
    std::uint32_t interfaceIndex = 0;
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    std::uint32_t broadcast = 0;
    std::uint32_t reassemblySize = 0;
    std::uint16_t type = 0;
};

/// One network interface; all zero and empty when the host does not know it.
struct InterfaceEntry {
    /// Bits per second.
    std::uint64_t transmitLinkSpeed = 0;
    std::array<std::uint8_t, 32> physicalAddress{};
    std::u16string alias;
    std::u16string description;
};

/// The network adapters of a host, real or simulated.
class HostNetwork {
public:
    virtual ~HostNetwork() = default;

    /// Fills \p rows, in the system's own order; false when the system does not give its table.
    virtual bool addressTable(std::vector<AddressRow>& rows) const = 0;
    virtual InterfaceEntry interfaceEntry(std::uint32_t interfaceIndex) const = 0;
};

/// Several hosts, simulated ones and the real one; none is null.
using HostNetworks = std::vector<std::shared_ptr<HostNetwork>>;

/// The operating system's network adapters (one definition per operating system).
std::shared_ptr<HostNetwork> makeSystemNetwork();

} // namespace host
