// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/DiscoveryBroadcast.h"

#include "orvcpp/aravis/discovery/Gvcp.h"
#include "platform/Ipv4Address.h"
#include "platform/NetworkAdapters.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>

#include <arpa/inet.h>
#include <sys/socket.h>

namespace orv::aravis {

namespace {

/// GVCP discovery command: acknowledge required, no data, request ID 1.
constexpr std::array<std::uint8_t, 8> question{0x42, 1, 0, 2, 0, 0, 0, 1};
/// Header of an acknowledge: success, discovery, 248 bytes of data, request ID 1.
constexpr std::array<std::uint8_t, 8> acknowledge{0, 0, 0, 3, 0, 248, 0, 1};
constexpr std::size_t acknowledgeSize = acknowledge.size() + 248;
using Packet = std::array<std::uint8_t, acknowledgeSize>;

/// Offsets of the camera's registers in an acknowledge, and lengths of their texts.
constexpr std::size_t macAt = 8 + 0x0A;
constexpr std::size_t addressAt = 8 + 0x24;
constexpr std::size_t vendorAt = 8 + 0x48;
constexpr std::size_t modelAt = 8 + 0x68;
constexpr std::size_t nameSize = 32;
constexpr std::size_t serialAt = 8 + 0xD8;
constexpr std::size_t serialSize = 16;

std::string text(const Packet& packet, std::size_t at, std::size_t size) {
    const auto* const begin = packet.data() + at;
    return {begin, std::find(begin, begin + size, 0)};
}

CameraRecord describe(const Packet& packet) {
    char mac[18];
    const std::uint8_t* const bytes = packet.data() + macAt;
    std::snprintf(mac, sizeof mac, "%02x:%02x:%02x:%02x:%02x:%02x", bytes[0], bytes[1], bytes[2],
                  bytes[3], bytes[4], bytes[5]);
    char address[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, packet.data() + addressAt, address, sizeof address);
    CameraRecord record;
    record.type = OrvTransportLayerTypeGEV;
    record.hardwareId = mac;
    record.vendor = text(packet, vendorAt, nameSize);
    record.model = text(packet, modelAt, nameSize);
    record.serialNumber = text(packet, serialAt, serialSize);
    record.place = address;
    return record;
}

/// Null when the adapter cannot send a broadcast.
std::unique_ptr<platform::UdpSocket> callThrough(std::uint32_t ownAddress) {
    auto made = std::make_unique<platform::UdpSocket>();
    const sockaddr_in everybody = platform::socketAddress(INADDR_BROADCAST, controlPort);
    // Binding to an adapter's address sends through that adapter.
    const bool isSent =
        made->set(SOL_SOCKET, SO_BROADCAST, 1) && made->bindTo(ownAddress, 0) &&
        sendto(made->handle(), question.data(), question.size(), 0,
               reinterpret_cast<const sockaddr*>(&everybody), sizeof everybody) >= 0;
    return isSent ? std::move(made) : nullptr;
}

} // namespace

DiscoveryBroadcast::DiscoveryBroadcast() {
    const auto adapters = platform::networkAdapters();
    for (const auto& adapter : adapters.value_or(std::vector<platform::NetworkAdapter>())) {
        if (!adapter.isUp)
            continue;
        if (auto made = callThrough(adapter.address))
            m_sockets.push_back(std::move(made));
    }
}

std::vector<CameraRecord> DiscoveryBroadcast::answers() const {
    std::vector<CameraRecord> cameras;
    for (const auto& socket : m_sockets) {
        Packet packet{};
        ssize_t size = 0;
        while ((size = recv(socket->handle(), packet.data(), packet.size(), MSG_DONTWAIT)) >= 0) {
            if (size == static_cast<ssize_t>(packet.size()) &&
                std::equal(acknowledge.begin(), acknowledge.end(), packet.begin()))
                cameras.push_back(describe(packet));
        }
    }
    return cameras;
}

} // namespace orv::aravis
