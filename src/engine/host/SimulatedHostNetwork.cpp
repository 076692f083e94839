// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/SimulatedHostNetwork.h"

#include "engine/host/ByteOrder.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {

namespace {

AddressRow addressRow(const SimulatedAdapter& adapter) {
    constexpr std::uint32_t maximumDatagram = 65535;
    constexpr std::uint16_t primaryAddress = 1;
    return {adapter.index,
            hostToNetwork(adapter.address),
            hostToNetwork(adapter.mask),
            hostToNetwork(adapter.address | ~adapter.mask),
            maximumDatagram,
            primaryAddress};
}

} // namespace

SimulatedHostNetwork::SimulatedHostNetwork(std::vector<SimulatedAdapter> adapters)
    : m_adapters(std::move(adapters)) {}

bool SimulatedHostNetwork::addressTable(std::vector<AddressRow>& rows) const {
    rows.clear();
    std::transform(m_adapters.begin(), m_adapters.end(), std::back_inserter(rows), addressRow);
    return true;
}

InterfaceEntry SimulatedHostNetwork::interfaceEntry(std::uint32_t interfaceIndex) const {
    const auto adapter = std::find_if(
        m_adapters.begin(), m_adapters.end(),
        [interfaceIndex](const SimulatedAdapter& each) { return each.index == interfaceIndex; });
    InterfaceEntry entry;
    if (adapter != m_adapters.end()) {
        entry.transmitLinkSpeed = adapter->bitsPerSecond;
        entry.alias.assign(adapter->alias.begin(), adapter->alias.end());
        entry.description = entry.alias;
    }
    return entry;
}

} // namespace host
