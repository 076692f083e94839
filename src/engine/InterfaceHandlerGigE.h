// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostNetwork.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// One IPv4 address of the host, with the properties of its adapter. Addresses are in
/// host byte order: 192.168.1.10 is 0xC0A8010A.
struct NetworkAdapter {
    std::uint32_t interfaceIndex = 0;
    std::uint64_t address = 0;
    std::uint64_t mask = 0;
    std::uint64_t broadcast = 0;
    std::uint32_t reassemblySize = 0;
    std::uint32_t addressType = 0;
    /// Bits per second.
    std::uint64_t linkSpeed = 0;
    /// Points into the entry that the record is made from; null in a record that outlives it.
    const std::uint8_t* physicalAddress = nullptr;
    std::string alias;
    std::string description;
};

/// The record of an address and its adapter. Its physical address points into \p entry.
NetworkAdapter makeNetworkAdapter(const host::AddressRow& row, const host::InterfaceEntry& entry);

/// IPv4 network adapters and their link speeds, read once at construction.
/// Bound to the GUI thread. Owned through a shared pointer made with the class itself, so its
/// destructor is not virtual.
class InterfaceHandlerGigE {
public:
    /// Reads \p networks in their order. The default is the operating system's network.
    explicit InterfaceHandlerGigE(const host::HostNetworks& networks = {host::makeSystemNetwork()});

    /// Bits per second of the adapter with this IPv4 address (host byte order: 192.168.1.10 is
    /// 0xC0A8010A); 0 when there is none. Of two adapters with one address the first counts.
    virtual std::uint64_t GetLinkSpeed(std::uint64_t address) const;

    /// Identifies the adapter with this address (host byte order): the same text for each address
    /// of one adapter. Empty when there is none.
    std::string adapterKey(std::uint64_t address) const;

private:
    struct Entry {
        NetworkAdapter adapter;
        /// Position in the list of networks: each counts its adapters from 1.
        std::size_t network;
    };

    void addAdapters(const host::HostNetwork& network, std::size_t position);
    const Entry* find(std::uint64_t address) const;

    std::vector<Entry> m_adapters;
};
