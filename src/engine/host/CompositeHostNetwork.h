// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostNetwork.h"
#include "engine/host/MergedNumbers.h"

namespace host {

/// Several networks as one, in their order. Interface indexes are its own, since those of different
/// networks may be alike. Reentrant.
class CompositeHostNetwork : public HostNetwork {
public:
    /// None of \p networks is empty.
    explicit CompositeHostNetwork(std::vector<std::shared_ptr<HostNetwork>> networks);

    /// False only when no network gives its table.
    bool addressTable(std::vector<AddressRow>& rows) const override;
    InterfaceEntry interfaceEntry(std::uint32_t interfaceIndex) const override;

private:
    const std::vector<std::shared_ptr<HostNetwork>> m_networks;
    mutable MergedNumbers m_indexes;
};

} // namespace host
