// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/NetworkAdapters.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace gige {

/// Addresses, both included.
struct AddressRange {
    std::uint32_t first;
    std::uint32_t last;
};

/// An IPv4 subnet by an address in it and its mask, in host byte order. Reentrant.
class Subnet {
public:
    Subnet(std::uint32_t address, std::uint32_t mask) : m_address(address), m_mask(mask) {}
    explicit Subnet(const platform::NetworkAdapter& adapter)
        : Subnet(adapter.address, adapter.mask) {}

    bool contains(std::uint32_t address) const { return (address & m_mask) == network(); }
    std::uint32_t network() const { return m_address & m_mask; }
    std::uint32_t broadcast() const { return network() | ~m_mask; }
    std::uint32_t mask() const { return m_mask; }
    /// Whether a host can have this address: neither the network's nor the broadcast address.
    bool isHost(std::uint32_t address) const;
    /// "192.168.1.0/24".
    std::string text() const;
    /// The longest range of hosts' addresses with none of \p used; nothing when there is none.
    std::optional<AddressRange> longestFree(std::vector<std::uint32_t> used) const;

private:
    std::uint32_t m_address;
    std::uint32_t m_mask;
};

/// The mask of 1 to 32 leading bits.
std::uint32_t maskOfPrefix(int bits);
/// Leading bits of a mask.
int prefixOfMask(std::uint32_t mask);

} // namespace gige
