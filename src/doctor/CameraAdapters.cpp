// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/CameraAdapters.h"

#include <algorithm>

namespace doctor {

namespace {

/// A mask of 31 or 32 bits leaves no room for other hosts.
bool hasRoom(const Subnet& subnet) {
    return ~subnet.mask > 1;
}

bool overlap(const Subnet& one, const Subnet& other) {
    return hasRoom(one) && hasRoom(other) &&
           (one.contains(other.address) || other.contains(one.address));
}

bool isFree(const HostEvidence& host, const Subnet& subnet, std::uint32_t address) {
    const std::uint32_t number = address & ~subnet.mask;
    return number != 0 && number != ~subnet.mask && !isOwnAddress(host, address) &&
           std::none_of(host.networkCameras.begin(), host.networkCameras.end(),
                        [&](const NetworkCamera& camera) { return camera.address == address; });
}

} // namespace

bool areTwins(const NetworkCamera& one, const NetworkCamera& other) {
    return one.address == other.address && one.macAddress != other.macAddress;
}

bool hasCameras(const HostEvidence& host, const std::string& adapter) {
    const auto isOn = [&](const auto& each) {
        return each.adapter == adapter;
    };
    const auto sendsBy = [&](const AdapterEvidence& upper) {
        return std::count(upper.lowerAdapters.begin(), upper.lowerAdapters.end(), adapter) > 0 &&
               hasCameras(host, upper.name);
    };
    return std::any_of(host.networkCameras.begin(), host.networkCameras.end(), isOn) ||
           std::any_of(host.links.begin(), host.links.end(), isOn) ||
           std::any_of(host.adapters.begin(), host.adapters.end(), sendsBy);
}

bool overlap(const AdapterEvidence& one, const AdapterEvidence& other) {
    for (const Subnet& subnet : one.subnets)
        for (const Subnet& others : other.subnets)
            if (overlap(subnet, others))
                return true;
    return false;
}

bool sharesSubnet(const HostEvidence& host, const AdapterEvidence& adapter) {
    return std::any_of(host.adapters.begin(), host.adapters.end(),
                       [&](const AdapterEvidence& other) {
                           return other.name != adapter.name && overlap(adapter, other);
                       });
}

const AdapterEvidence* findAdapter(const HostEvidence& host, const std::string& name) {
    const auto found =
        std::find_if(host.adapters.begin(), host.adapters.end(),
                     [&](const AdapterEvidence& adapter) { return adapter.name == name; });
    return found == host.adapters.end() ? nullptr : &*found;
}

bool isOwnAddress(const HostEvidence& host, std::uint32_t address) {
    for (const AdapterEvidence& adapter : host.adapters)
        for (const Subnet& subnet : adapter.subnets)
            if (subnet.address == address || (adapter.isLoopback && subnet.contains(address)))
                return true;
    return false;
}

std::uint32_t proposedAddress(const HostEvidence& host, const AdapterEvidence& adapter,
                              std::uint32_t present) {
    // Enough for all cameras of a host and its neighbours.
    constexpr std::uint32_t mostTried = 4096;
    for (const Subnet& subnet : adapter.subnets) {
        if (!hasRoom(subnet))
            continue;
        const std::uint32_t network = subnet.address & subnet.mask;
        if (const std::uint32_t similar = network | (present & ~subnet.mask);
            isFree(host, subnet, similar))
            return similar;
        const std::uint32_t last = std::min(~subnet.mask, mostTried);
        for (std::uint32_t number = 1; number < last; ++number)
            if (isFree(host, subnet, network | number))
                return network | number;
    }
    return 0;
}

} // namespace doctor
