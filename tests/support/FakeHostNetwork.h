// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostNetwork.h"

#include <cstring>
#include <map>

/// A host's network adapters as plain data.
class FakeHostNetwork : public host::HostNetwork {
public:
    bool givesTable = true;
    std::vector<host::AddressRow> rows;
    std::map<std::uint32_t, host::InterfaceEntry> entries;

    /// An adapter with one address, whose bytes are given as they are written.
    void add(std::uint32_t index, std::array<std::uint8_t, 4> address,
             std::uint64_t bitsPerSecond) {
        host::AddressRow row;
        row.interfaceIndex = index;
        row.address = inNetworkOrder(address);
        rows.push_back(row);
        entries[index].transmitLinkSpeed = bitsPerSecond;
    }

    static std::uint32_t inNetworkOrder(std::array<std::uint8_t, 4> bytes) {
        std::uint32_t number = 0;
        std::memcpy(&number, bytes.data(), bytes.size());
        return number;
    }

    bool addressTable(std::vector<host::AddressRow>& table) const override {
        table = givesTable ? rows : std::vector<host::AddressRow>();
        return givesTable;
    }

    host::InterfaceEntry interfaceEntry(std::uint32_t interfaceIndex) const override {
        const auto found = entries.find(interfaceIndex);
        return found == entries.end() ? host::InterfaceEntry{} : found->second;
    }
};
