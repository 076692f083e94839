// SPDX-License-Identifier: BSD-3-Clause
#include "platform/NetworkAdapters.h"

#include "platform/EthernetSettings.h"
#include "platform/Ipv4Address.h"
#include "platform/KernelSettings.h"
#include "platform/Sysfs.h"
#include "platform/UdpSocket.h"

#include <algorithm>
#include <cctype>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>

namespace platform {

namespace {

constexpr std::int64_t bitsPerMegabit = 1'000'000;
/// The route does not depend on the port, and nothing is sent.
constexpr std::uint16_t anyPort = 3956;
constexpr int macDigits = 12;
/// VIRTIO_NET_F_NOTF_COAL (linux/virtio_net.h of newer kernels).
constexpr std::size_t coalescingFeature = 53;
/// Unknown speed: -1, which the sysfs of older kernels shows as an unsigned number.
constexpr std::uint32_t unknownSpeed = 0xFFFFFFFF;

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

std::filesystem::path folderOf(const std::string& adapter, const std::filesystem::path& sysfs) {
    return sysfs / "class/net" / adapter;
}

} // namespace

std::optional<std::vector<NetworkAdapter>> networkAdapters() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return std::nullopt;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> list(first, &freeifaddrs);
    const std::vector<std::string> names = adapterNames(first);
    std::vector<NetworkAdapter> adapters;
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        const bool broadcasts = (entry->ifa_flags & IFF_BROADCAST) != 0;
        adapters.push_back({adapterOf(entry->ifa_name, names), addressNumber(entry->ifa_addr),
                            addressNumber(entry->ifa_netmask),
                            broadcasts ? addressNumber(entry->ifa_broadaddr) : 0,
                            (entry->ifa_flags & IFF_UP) != 0,
                            (entry->ifa_flags & IFF_LOOPBACK) != 0});
    }
    return adapters;
}

std::optional<NetworkAdapter> adapterTowards(std::uint32_t address) {
    const UdpSocket socket;
    if (!socket.connectTo(address, anyPort))
        return std::nullopt;
    const auto adapters = networkAdapters().value_or(std::vector<NetworkAdapter>());
    const auto found = std::find_if(adapters.begin(), adapters.end(),
                                    [local = socket.localAddress()](const NetworkAdapter& adapter) {
                                        return adapter.address == local;
                                    });
    return found == adapters.end() ? std::nullopt : std::optional(*found);
}

std::string adapterOf(const std::string& label, const std::vector<std::string>& adapters) {
    std::string longest;
    for (const std::string& adapter : adapters)
        if (adapter.size() > longest.size() && label.rfind(adapter, 0) == 0)
            longest = adapter;
    return longest;
}

std::int64_t linkSpeed(const std::string& adapter, const std::filesystem::path& sysfs) {
    if (const auto link = linkSettings(adapter))
        return link->speed;
    const std::uint64_t megabits = sysfsNumber(folderOf(adapter, sysfs) / "speed").value_or(0);
    return megabits < unknownSpeed ? static_cast<std::int64_t>(megabits) * bitsPerMegabit : 0;
}

std::int64_t mtu(const std::string& adapter, const std::filesystem::path& sysfs) {
    return static_cast<std::int64_t>(sysfsNumber(folderOf(adapter, sysfs) / "mtu").value_or(0));
}

bool mayCoalesce(const std::string& adapter, const std::filesystem::path& sysfs) {
    // Only virtio devices have this file: a character for each feature.
    const std::string features = sysfsAttribute(folderOf(adapter, sysfs) / "device/features");
    return features.size() <= coalescingFeature || features[coalescingFeature] == '1';
}

std::uint64_t macAddress(const std::string& adapter, const std::filesystem::path& sysfs) {
    return macNumber(sysfsAttribute(folderOf(adapter, sysfs) / "address"));
}

bool checksWayBack(const std::string& adapter, const std::filesystem::path& root) {
    return reversePathFilter(adapter, root).value_or(0) != 0;
}

std::uint64_t macNumber(const std::string& text) {
    std::uint64_t mac = 0;
    int digits = 0;
    for (const char digit : text) {
        if (digit == ':' || digit == '-')
            continue;
        if (!std::isxdigit(static_cast<unsigned char>(digit)) || ++digits > macDigits)
            return 0;
        const int value = digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
        mac = mac << 4U | static_cast<std::uint64_t>(value);
    }
    return mac;
}

} // namespace platform
