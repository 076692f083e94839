// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/NetworkFeatures.h"

namespace orv {

FeatureNode& addAddress(FeatureSet& set, const std::string& name, std::uint32_t address) {
    return set.fixedNumber(name, address).limits(0, 0xFFFFFFFF).shownAs("IPV4Address");
}

FeatureNode& addMac(FeatureSet& set, const std::string& name, std::uint64_t mac) {
    return set.fixedNumber(name, static_cast<std::int64_t>(mac))
        .limits(0, 0xFFFFFFFFFFFF)
        .shownAs("MACAddress");
}

void addAdapterAddresses(FeatureSet& set, std::uint32_t address, std::uint32_t mask,
                         std::uint64_t mac) {
    set.category("/InterfaceInformation/GigEVision");
    addAddress(set, "GevInterfaceSubnetIPAddress", address).about("IPv4 address of the adapter.");
    addAddress(set, "GevInterfaceSubnetMask", mask).about("Subnet mask of the adapter.");
    addMac(set, "GevInterfaceMACAddress", mac).about("MAC address of the adapter.");
}

} // namespace orv
