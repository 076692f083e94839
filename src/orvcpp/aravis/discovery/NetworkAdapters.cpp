// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/NetworkAdapters.h"

#include "orvcpp/aravis/discovery/DatagramSocket.h"

#include <arpa/inet.h>
#include <cctype>
#include <cstring>
#include <fstream>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>
#include <netinet/in.h>

namespace orv::aravis {

namespace {

constexpr std::int64_t bitsPerMegabit = 1'000'000;
/// Any port does: nothing is sent.
constexpr std::uint16_t anyPort = 3956;
constexpr int macDigits = 12;

std::uint32_t hostAddress(const sockaddr* address) {
    if (!address || address->sa_family != AF_INET)
        return 0;
    return ntohl(reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr);
}

std::string attribute(const std::string& adapter, const char* name,
                      const std::filesystem::path& sysfs = "/sys") {
    std::string text;
    std::ifstream(sysfs / "class/net" / adapter / name) >> text;
    return text;
}

std::int64_t numberIn(const std::string& text) {
    try {
        return text.empty() ? 0 : std::stoll(text);
    } catch (const std::exception&) {
        return 0;
    }
}

NetworkAdapter describe(const ifaddrs& entry) {
    NetworkAdapter adapter;
    // A further address may be listed as "eth0:1": the adapter is "eth0".
    adapter.name = std::string(entry.ifa_name).substr(0, std::strcspn(entry.ifa_name, ":"));
    adapter.address = hostAddress(entry.ifa_addr);
    adapter.mask = hostAddress(entry.ifa_netmask);
    adapter.isLoopback = (entry.ifa_flags & IFF_LOOPBACK) != 0;
    adapter.mac = macNumber(attribute(adapter.name, "address"));
    return adapter;
}

} // namespace

std::int64_t linkSpeed(const std::string& adapter, const std::filesystem::path& sysfs) {
    // An adapter without a link answers -1, or nothing at all; on older kernels the unsigned number
    // of these bits.
    constexpr std::int64_t unknown = 0xFFFFFFFF;
    const std::int64_t megabits = numberIn(attribute(adapter, "speed", sysfs));
    return megabits > 0 && megabits < unknown ? megabits * bitsPerMegabit : 0;
}

std::int64_t mtu(const std::string& adapter) {
    return numberIn(attribute(adapter, "mtu"));
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

std::optional<NetworkAdapter> adapterTowards(std::uint32_t address) {
    const DatagramSocket socket;
    if (!socket.connectTo(address, anyPort))
        return std::nullopt;
    const std::uint32_t local = socket.localAddress();
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return std::nullopt;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> list(first, &freeifaddrs);
    for (const ifaddrs* entry = list.get(); entry; entry = entry->ifa_next) {
        if (local != 0 && hostAddress(entry->ifa_addr) == local)
            return describe(*entry);
    }
    return std::nullopt;
}

std::optional<std::uint32_t> parseAddress(const std::string& text) {
    in_addr address{};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1)
        return std::nullopt;
    return ntohl(address.s_addr);
}

} // namespace orv::aravis
