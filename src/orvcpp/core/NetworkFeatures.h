// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureSet.h"

#include <cstdint>
#include <string>

namespace orv {

/// A fixed IPv4 address, in host byte order.
FeatureNode& addAddress(FeatureSet& set, const std::string& name, std::uint32_t address);
FeatureNode& addMac(FeatureSet& set, const std::string& name, std::uint64_t mac);
/// Address, subnet mask (host byte order) and MAC address of an interface's network adapter, in the
/// category "/InterfaceInformation/GigEVision", which is then the current one.
void addAdapterAddresses(FeatureSet& set, std::uint32_t address, std::uint32_t mask,
                         std::uint64_t mac);

} // namespace orv
