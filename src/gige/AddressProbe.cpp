// SPDX-License-Identifier: BSD-3-Clause
#include "gige/AddressProbe.h"

#include "gige/BigEndian.h"
#include "gige/BootstrapRegisters.h"
#include "gige/BroadcastSocket.h"
#include "gige/GvcpCommand.h"
#include "platform/Descriptor.h"
#include "platform/Ipv4Address.h"
#include "platform/UdpSocket.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <sys/socket.h>

namespace gige {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int probes = 3;
constexpr milliseconds probeWait{250};
constexpr milliseconds tableWait{20};

/// An ARP packet for IPv4 on Ethernet (RFC 826): kinds and lengths, operation, MAC and IPv4 address
/// of the sender, then of the target.
constexpr std::array<std::uint8_t, 6> arpKinds{0, 1, 8, 0, 6, 4};
constexpr std::uint16_t arpRequest = 1;
constexpr std::uint16_t arpReply = 2;
constexpr std::size_t arpSize = 28;
constexpr std::size_t operationAt = 6;
constexpr std::size_t senderMacAt = 8;
constexpr std::size_t senderAddressAt = 14;

sockaddr_ll everybodyOn(const platform::NetworkAdapter& adapter) {
    sockaddr_ll place{};
    place.sll_family = AF_PACKET;
    place.sll_protocol = htons(ETH_P_ARP);
    place.sll_ifindex = static_cast<int>(if_nametoindex(adapter.name.c_str()));
    place.sll_halen = ETH_ALEN;
    std::fill_n(place.sll_addr, ETH_ALEN, std::uint8_t{0xFF});
    return place;
}

/// A question by nobody, so that no host changes its table (RFC 5227, 2.1.1).
std::vector<std::uint8_t> arpProbe(const platform::Descriptor& socket, std::uint32_t address) {
    sockaddr_ll own{};
    socklen_t size = sizeof own;
    getsockname(socket.handle(), reinterpret_cast<sockaddr*>(&own), &size);
    std::vector<std::uint8_t> packet(arpKinds.begin(), arpKinds.end());
    appendBigEndian(packet, arpRequest, 2);
    packet.insert(packet.end(), own.sll_addr, own.sll_addr + ETH_ALEN);
    appendBigEndian(packet, 0, 4);
    appendBigEndian(packet, 0, ETH_ALEN);
    appendBigEndian(packet, address, 4);
    return packet;
}

/// Waits for the host that says it has \p address.
std::optional<std::uint64_t> receiveReply(const platform::Descriptor& socket,
                                          std::uint32_t address) {
    const auto end = Clock::now() + probeWait;
    for (auto now = Clock::now(); now < end; now = Clock::now()) {
        waitForAny({socket.handle()}, std::chrono::ceil<milliseconds>(end - now));
        std::array<std::uint8_t, arpSize> packet{};
        if (recv(socket.handle(), packet.data(), packet.size(), MSG_DONTWAIT) <
            static_cast<ssize_t>(arpSize))
            continue;
        if (bigEndian16(&packet[operationAt]) == arpReply &&
            bigEndian32(&packet[senderAddressAt]) == address)
            return std::uint64_t{bigEndian16(&packet[senderMacAt])} << 32U |
                   bigEndian32(&packet[senderMacAt + 2]);
    }
    return std::nullopt;
}

std::optional<std::uint64_t> askByArp(const platform::Descriptor& socket,
                                      const sockaddr_ll& everybody, std::uint32_t address) {
    const auto packet = arpProbe(socket, address);
    for (int i = 0; i < probes; ++i) {
        sendto(socket.handle(), packet.data(), packet.size(), 0,
               reinterpret_cast<const sockaddr*>(&everybody), sizeof everybody);
        if (const auto mac = receiveReply(socket, address))
            return mac;
    }
    return std::nullopt;
}

/// Sends the address a packet, for which the kernel asks by ARP, and watches the table.
std::optional<std::uint64_t> askKernel(const platform::NetworkAdapter& adapter,
                                       std::uint32_t address) {
    const platform::UdpSocket socket;
    const auto packet = gvcpPacket(GvcpCommand::Discovery, acknowledgeRequired, 1);
    if (!socket.bindTo(adapter.address, 0) || !socket.connectTo(address, controlPort))
        return std::nullopt;
    send(socket.handle(), packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    for (const auto end = Clock::now() + probes * probeWait; Clock::now() < end;
         std::this_thread::sleep_for(tableWait)) {
        if (const auto mac = knownNeighbour(adapter, address))
            return mac;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::uint64_t> hostWithAddress(const platform::NetworkAdapter& adapter,
                                             std::uint32_t address) {
    if (adapter.isLoopback || adapter.broadcast == 0)
        return std::nullopt;
    const platform::Descriptor socket(
        ::socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, htons(ETH_P_ARP)));
    const sockaddr_ll everybody = everybodyOn(adapter);
    const bool isReady =
        socket.isOpen() &&
        bind(socket.handle(), reinterpret_cast<const sockaddr*>(&everybody), sizeof everybody) == 0;
    return isReady ? askByArp(socket, everybody, address) : askKernel(adapter, address);
}

std::optional<std::uint64_t> knownNeighbour(const platform::NetworkAdapter& adapter,
                                            std::uint32_t address,
                                            const std::filesystem::path& file) {
    constexpr unsigned complete = 2;
    std::ifstream table(file);
    std::string line;
    std::getline(table, line); // headings
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        std::string ip, type, mac, mask, device;
        unsigned flags = 0;
        fields >> ip >> type >> std::hex >> flags >> mac >> mask >> device;
        if (fields && platform::parseAddress(ip) == address && device == adapter.name &&
            (flags & complete) != 0)
            return platform::macNumber(mac);
    }
    return std::nullopt;
}

} // namespace gige
