// SPDX-License-Identifier: BSD-3-Clause
// The order of these headers is the platform's: addresses before the IP helper.
#include <winsock2.h>

#include <ws2tcpip.h>

#include <iphlpapi.h>

#include "engine/host/HostNetwork.h"
#include "engine/host/TableQuery.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace host {

namespace {

static_assert(insufficientBuffer == ERROR_INSUFFICIENT_BUFFER);

std::uint32_t queryAddressTable(void* buffer, std::uint32_t& size) {
    ULONG bytes = size;
    const DWORD result = GetIpAddrTable(static_cast<PMIB_IPADDRTABLE>(buffer), &bytes, FALSE);
    size = bytes;
    return result;
}

/// Windows reports all ones for an unknown speed, as of virtual adapters.
std::uint64_t knownSpeed(ULONG64 speed) {
    return speed == std::numeric_limits<ULONG64>::max() ? 0 : speed;
}

template <std::size_t Size> std::u16string text(const WCHAR (&units)[Size]) {
    return {std::begin(units), std::find(std::begin(units), std::end(units), L'\0')};
}

class WindowsNetwork : public HostNetwork {
public:
    bool addressTable(std::vector<AddressRow>& rows) const override {
        rows.clear();
        const auto bytes = readTable(queryAddressTable);
        if (!bytes)
            return false;
        const auto* table = reinterpret_cast<const MIB_IPADDRTABLE*>(bytes->data());
        std::transform(table->table, table->table + table->dwNumEntries, std::back_inserter(rows),
                       [](const MIB_IPADDRROW& row) {
                           return AddressRow{row.dwIndex,     row.dwAddr,      row.dwMask,
                                             row.dwBCastAddr, row.dwReasmSize, row.wType};
                       });
        return true;
    }

    InterfaceEntry interfaceEntry(std::uint32_t interfaceIndex) const override {
        MIB_IF_ROW2 row{};
        row.InterfaceIndex = interfaceIndex;
        // A failure leaves the row zeroed: speed 0 and empty texts.
        GetIfEntry2(&row);

        InterfaceEntry entry;
        static_assert(sizeof row.PhysicalAddress == sizeof entry.physicalAddress);
        entry.transmitLinkSpeed = knownSpeed(row.TransmitLinkSpeed);
        std::copy(std::begin(row.PhysicalAddress), std::end(row.PhysicalAddress),
                  entry.physicalAddress.begin());
        entry.alias = text(row.Alias);
        entry.description = text(row.Description);
        return entry;
    }
};

} // namespace

std::shared_ptr<HostNetwork> makeSystemNetwork() {
    return std::make_shared<WindowsNetwork>();
}

} // namespace host
