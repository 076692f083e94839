// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/CompositeHostNetwork.h"

#include <utility>

namespace host {

CompositeHostNetwork::CompositeHostNetwork(std::vector<std::shared_ptr<HostNetwork>> networks)
    : m_networks(std::move(networks)) {}

bool CompositeHostNetwork::addressTable(std::vector<AddressRow>& rows) const {
    rows.clear();
    bool anyTable = false;
    for (std::size_t source = 0; source < m_networks.size(); ++source) {
        std::vector<AddressRow> part;
        if (!m_networks[source]->addressTable(part))
            continue;
        anyTable = true;
        for (AddressRow& row : part) {
            row.interfaceIndex = m_indexes.merged(source, row.interfaceIndex);
            rows.push_back(row);
        }
    }
    return anyTable;
}

InterfaceEntry CompositeHostNetwork::interfaceEntry(std::uint32_t interfaceIndex) const {
    const auto origin = m_indexes.origin(interfaceIndex);
    return origin ? m_networks[origin->source]->interfaceEntry(origin->number) : InterfaceEntry{};
}

} // namespace host
