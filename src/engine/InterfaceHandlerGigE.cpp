// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerGigE.h"

#include "engine/host/ByteOrder.h"

#include <algorithm>
#include <iostream>

namespace {

char lowByte(char16_t unit) {
    return static_cast<char>(unit & 0xFFU);
}
char highByte(char16_t unit) {
    return static_cast<char>(unit >> 8U);
}

std::string narrowedUnits(const std::u16string& text) {
    std::string narrow(text.size(), '\0');
    std::transform(text.begin(), text.end(), narrow.begin(), lowByte);
    return narrow;
}

/// The units' bytes, low byte first, up to the first zero byte. For an ASCII text this is its first
/// character.
std::string bytesUpToZero(const std::u16string& text) {
    std::string bytes;
    for (const char16_t unit : text) {
        for (const char byte : {lowByte(unit), highByte(unit)}) {
            if (byte == '\0')
                return bytes;
            bytes += byte;
        }
    }
    return bytes;
}

} // namespace

NetworkAdapter makeNetworkAdapter(const host::AddressRow& row, const host::InterfaceEntry& entry) {
    NetworkAdapter adapter;
    adapter.interfaceIndex = row.interfaceIndex;
    adapter.address = host::networkToHost(row.address);
    adapter.mask = host::networkToHost(row.mask);
    adapter.broadcast = host::networkToHost(row.broadcast);
    adapter.reassemblySize = row.reassemblySize;
    adapter.addressType = row.type;
    adapter.linkSpeed = entry.transmitLinkSpeed;
    adapter.physicalAddress = entry.physicalAddress.data();
    adapter.alias = narrowedUnits(entry.alias);
    adapter.description = bytesUpToZero(entry.description);
    return adapter;
}

InterfaceHandlerGigE::InterfaceHandlerGigE(const host::HostNetworks& networks) {
    for (std::size_t position = 0; position < networks.size(); ++position)
        addAdapters(*networks[position], position);
}

void InterfaceHandlerGigE::addAdapters(const host::HostNetwork& network, std::size_t position) {
    std::vector<host::AddressRow> rows;
    if (!network.addressTable(rows)) {
        std::cerr << "Unable to get ip address table\n";
        return;
    }
    for (const host::AddressRow& row : rows) {
        const host::InterfaceEntry entry = network.interfaceEntry(row.interfaceIndex);
        m_adapters.push_back({makeNetworkAdapter(row, entry), position});
        // Points into `entry`, which ends here.
        m_adapters.back().adapter.physicalAddress = nullptr;
    }
}

const InterfaceHandlerGigE::Entry* InterfaceHandlerGigE::find(std::uint64_t address) const {
    const auto found =
        std::find_if(m_adapters.begin(), m_adapters.end(),
                     [address](const Entry& entry) { return entry.adapter.address == address; });
    return found == m_adapters.end() ? nullptr : &*found;
}

std::uint64_t InterfaceHandlerGigE::GetLinkSpeed(std::uint64_t address) const {
    const Entry* found = find(address);
    return found == nullptr ? 0 : found->adapter.linkSpeed;
}

std::string InterfaceHandlerGigE::adapterKey(std::uint64_t address) const {
    const Entry* found = find(address);
    return found == nullptr ? std::string()
                            : std::to_string(found->network) + ':' +
                                  std::to_string(found->adapter.interfaceIndex);
}
