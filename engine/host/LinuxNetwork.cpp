// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxNetwork.h"

#include "engine/host/HostNetwork.h"
#include "engine/host/Sysfs.h"

#include <array>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

namespace host {

namespace {

std::uint32_t ipv4Address(const sockaddr* address) {
    if (address == nullptr || address->sa_family != AF_INET)
        return 0;
    return reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr;
}

/// Interface addresses of the kernel; link speeds from sysfs. Reassembly size and address type are
/// 0: the kernel does not tell them by address.
class LinuxNetwork : public HostNetwork {
public:
    bool addressTable(std::vector<AddressRow>& rows) const override {
        rows.clear();
        ifaddrs* first = nullptr;
        if (getifaddrs(&first) != 0)
            return false;
        const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> list(first, &freeifaddrs);
        for (const ifaddrs* entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
            if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET)
                continue;
            AddressRow row;
            row.interfaceIndex = interfaceIndexOf(entry->ifa_name);
            row.address = ipv4Address(entry->ifa_addr);
            row.mask = ipv4Address(entry->ifa_netmask);
            if ((entry->ifa_flags & IFF_BROADCAST) != 0)
                row.broadcast = ipv4Address(entry->ifa_broadaddr);
            rows.push_back(row);
        }
        return true;
    }

    InterfaceEntry interfaceEntry(std::uint32_t interfaceIndex) const override {
        std::array<char, IF_NAMESIZE> name{};
        if (if_indextoname(interfaceIndex, name.data()) == nullptr)
            return {};
        return sysfsInterfaceEntry(name.data());
    }
};

} // namespace

std::uint32_t interfaceIndexOf(std::string label) {
    while (!label.empty()) {
        if (const std::uint32_t index = if_nametoindex(label.c_str()))
            return index;
        label.pop_back();
    }
    return 0;
}

std::shared_ptr<HostNetwork> makeSystemNetwork() {
    return std::make_shared<LinuxNetwork>();
}

} // namespace host
