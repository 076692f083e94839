// SPDX-License-Identifier: BSD-3-Clause
#include "gige/BroadcastSocket.h"

#include "gige/BootstrapRegisters.h"
#include "gige/IpDatagram.h"
#include "platform/Ipv4Address.h"

#include <array>

#include <arpa/inet.h>
#include <linux/filter.h>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>

namespace gige {

namespace {

/// Larger than every answer of the control protocol (GigE Vision 2.2, 15.1: 576 bytes).
constexpr std::size_t largestAnswer = 1500;
using Buffer = std::array<std::uint8_t, largestAnswer>;

/// Bytes that wait at a socket; 0 when there are none.
std::size_t receiveFrom(int handle, Buffer& buffer) {
    const auto size = recv(handle, buffer.data(), buffer.size(), MSG_DONTWAIT);
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

/// Leaves only UDP packets to \p port: the adapter may receive streams of other programs.
bool filterPort(int handle, std::uint16_t port) {
    constexpr std::uint32_t fragmentOffset = 0x1FFF;
    sock_filter code[] = {BPF_STMT(BPF_LD | BPF_B | BPF_ABS, 9),
                          BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 0, 6),
                          BPF_STMT(BPF_LD | BPF_H | BPF_ABS, 6),
                          BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, fragmentOffset, 4, 0),
                          BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),
                          BPF_STMT(BPF_LD | BPF_H | BPF_IND, 2),
                          BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, port, 0, 1),
                          BPF_STMT(BPF_RET | BPF_K, largestAnswer),
                          BPF_STMT(BPF_RET | BPF_K, 0)};
    const sock_fprog program{sizeof code / sizeof code[0], code};
    return setsockopt(handle, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program) == 0;
}

} // namespace

BroadcastSocket::BroadcastSocket(const platform::NetworkAdapter& adapter, Reach reach)
    : m_adapter(adapter), m_isBound(bindAll(reach)) {}

bool BroadcastSocket::bindAll(Reach reach) {
    // Binding to an adapter's address sends through that adapter.
    if (!m_socket.set(SOL_SOCKET, SO_BROADCAST, 1) || !m_socket.bindTo(m_adapter.address, 0))
        return false;
    if (reach == Reach::OwnSubnets || openPacketSocket())
        return true;
    m_broadcasts = std::make_unique<platform::UdpSocket>();
    // Other adapters' networks may be the same one. Fails before Linux 5.7 without rights; then
    // an answer is attributed to the adapter that asked.
    setsockopt(m_broadcasts->handle(), SOL_SOCKET, SO_BINDTODEVICE, m_adapter.name.c_str(),
               static_cast<socklen_t>(m_adapter.name.size()));
    return m_broadcasts->bindTo(INADDR_BROADCAST, m_socket.localPort());
}

bool BroadcastSocket::openPacketSocket() {
    // Of protocol 0, the socket hears nothing until it is bound.
    auto made =
        std::make_unique<platform::Descriptor>(socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_ll place{};
    place.sll_family = AF_PACKET;
    place.sll_protocol = htons(ETH_P_IP);
    place.sll_ifindex = static_cast<int>(if_nametoindex(m_adapter.name.c_str()));
    if (!made->isOpen() || place.sll_ifindex == 0 ||
        !filterPort(made->handle(), m_socket.localPort()) ||
        bind(made->handle(), reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0)
        return false;
    m_packets = std::move(made);
    return true;
}

bool BroadcastSocket::send(const std::vector<std::uint8_t>& packet) const {
    const sockaddr_in everybody = platform::socketAddress(INADDR_BROADCAST, controlPort);
    return m_isBound &&
           sendto(m_socket.handle(), packet.data(), packet.size(), 0,
                  reinterpret_cast<const sockaddr*>(&everybody), sizeof everybody) >= 0;
}

std::optional<std::vector<std::uint8_t>> BroadcastSocket::receive() const {
    Buffer buffer{};
    for (const int handle : {m_socket.handle(), m_broadcasts ? m_broadcasts->handle() : -1}) {
        const std::size_t size = receiveFrom(handle, buffer);
        if (size > 0)
            return std::vector<std::uint8_t>(buffer.data(), buffer.data() + size);
    }
    while (const std::size_t size = m_packets ? receiveFrom(m_packets->handle(), buffer) : 0) {
        UdpDatagram datagram;
        if (readIpDatagram(buffer.data(), size, size, datagram))
            return std::vector<std::uint8_t>(datagram.data, datagram.data + datagram.captured);
    }
    return std::nullopt;
}

std::vector<int> BroadcastSocket::handles() const {
    std::vector<int> handles{m_socket.handle()};
    if (m_broadcasts)
        handles.push_back(m_broadcasts->handle());
    if (m_packets)
        handles.push_back(m_packets->handle());
    return handles;
}

void BroadcastSocket::wait(std::chrono::milliseconds limit) const {
    waitForAny(handles(), limit);
}

void waitForAny(const std::vector<int>& handles, std::chrono::milliseconds limit) {
    std::vector<pollfd> waiting;
    for (const int handle : handles)
        waiting.push_back({handle, POLLIN, 0});
    poll(waiting.data(), waiting.size(), static_cast<int>(limit.count()));
}

} // namespace gige
