// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxNetwork.h"

#include "engine/host/HostNetwork.h"
#include "engine/host/Sysfs.h"

#include <array>
#include <climits>
#include <ifaddrs.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <netinet/in.h>
#include <optional>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace host {

namespace {

std::uint32_t ipv4Address(const sockaddr* address) {
    if (address == nullptr || address->sa_family != AF_INET)
        return 0;
    return reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr;
}

class Socket {
public:
    Socket() : m_descriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
    ~Socket() {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }

    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    int descriptor() const { return m_descriptor; }

private:
    const int m_descriptor;
};

/// Bits per second as the adapter's driver tells them, 0 for an unknown speed; nothing where the
/// driver tells no speeds.
std::optional<std::uint64_t> driverLinkSpeed(const std::string& adapter) {
    // Three masks follow the structure; each has at most SCHAR_MAX words, by the type of its count.
    std::array<std::uint32_t, sizeof(ethtool_link_settings) / sizeof(std::uint32_t) + 3 * SCHAR_MAX>
        buffer{};
    auto* settings = reinterpret_cast<ethtool_link_settings*>(buffer.data());
    ifreq request{};
    adapter.copy(request.ifr_name, IF_NAMESIZE - 1);
    request.ifr_data = reinterpret_cast<char*>(settings);
    const Socket socket;
    const auto ask = [&] {
        settings->cmd = ETHTOOL_GLINKSETTINGS;
        return ioctl(socket.descriptor(), SIOCETHTOOL, &request) == 0;
    };
    // The first answer is only the size of the masks, as a negative number.
    if (!ask() || settings->link_mode_masks_nwords >= 0)
        return std::nullopt;
    settings->link_mode_masks_nwords = static_cast<__s8>(-settings->link_mode_masks_nwords);
    if (!ask() || settings->link_mode_masks_nwords <= 0)
        return std::nullopt;
    constexpr std::uint32_t unknown = 0xFFFFFFFF;
    return settings->speed == unknown ? 0 : std::uint64_t{settings->speed} * 1'000'000;
}

/// Names of all adapters in a list of addresses. Each adapter has a packet-level entry (AF_PACKET),
/// even without an IP address.
std::vector<std::string> adapterNames(const ifaddrs* list) {
    std::vector<std::string> names;
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        const int family = entry->ifa_addr == nullptr ? AF_UNSPEC : entry->ifa_addr->sa_family;
        if (family != AF_INET && family != AF_INET6)
            names.emplace_back(entry->ifa_name);
    }
    return names;
}

/// Addresses of the kernel; link speeds of the adapters' drivers, else of sysfs, which may show the
/// adapters of another network namespace. Reassembly size and address type are 0: the kernel does
/// not tell them by address.
class LinuxNetwork : public HostNetwork {
public:
    bool addressTable(std::vector<AddressRow>& rows) const override {
        rows.clear();
        ifaddrs* first = nullptr;
        if (getifaddrs(&first) != 0)
            return false;
        const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> list(first, &freeifaddrs);
        const std::vector<std::string> adapters = adapterNames(first);
        for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
            if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET)
                continue;
            AddressRow row;
            row.interfaceIndex = if_nametoindex(adapterOf(entry->ifa_name, adapters).c_str());
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
        InterfaceEntry entry = sysfsInterfaceEntry(name.data());
        entry.transmitLinkSpeed = driverLinkSpeed(name.data()).value_or(entry.transmitLinkSpeed);
        return entry;
    }
};

} // namespace

std::string adapterOf(const std::string& label, const std::vector<std::string>& adapters) {
    std::string longest;
    for (const std::string& adapter : adapters) {
        if (adapter.size() > longest.size() && label.rfind(adapter, 0) == 0)
            longest = adapter;
    }
    return longest;
}

std::shared_ptr<HostNetwork> makeSystemNetwork() {
    return std::make_shared<LinuxNetwork>();
}

} // namespace host
