// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostNetwork.h"
#include "sdk/SimulatedHost.h"

namespace host {

/// The network adapters of a simulated host. Immutable, thus safe to use from any thread.
class SimulatedHostNetwork : public HostNetwork {
public:
    explicit SimulatedHostNetwork(std::vector<SimulatedAdapter> adapters);

    bool addressTable(std::vector<AddressRow>& rows) const override;
    InterfaceEntry interfaceEntry(std::uint32_t interfaceIndex) const override;

private:
    const std::vector<SimulatedAdapter> m_adapters;
};

} // namespace host
