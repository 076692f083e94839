// SPDX-License-Identifier: BSD-3-Clause
#include "platform/UdpSocket.h"

#include "platform/Ipv4Address.h"

#include <sys/socket.h>
#include <unistd.h>

namespace platform {

namespace {

sockaddr_in localName(int handle) {
    sockaddr_in own{};
    socklen_t size = sizeof own;
    getsockname(handle, reinterpret_cast<sockaddr*>(&own), &size);
    return own;
}

} // namespace

UdpSocket::UdpSocket() : m_handle(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

UdpSocket::~UdpSocket() {
    if (m_handle >= 0)
        close(m_handle);
}

bool UdpSocket::bindTo(std::uint32_t address, std::uint16_t port) const {
    const sockaddr_in own = socketAddress(address, port);
    return bind(m_handle, reinterpret_cast<const sockaddr*>(&own), sizeof own) == 0;
}

bool UdpSocket::connectTo(std::uint32_t address, std::uint16_t port) const {
    const sockaddr_in peer = socketAddress(address, port);
    return connect(m_handle, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0;
}

bool UdpSocket::set(int level, int option, int value) const {
    return setsockopt(m_handle, level, option, &value, sizeof value) == 0;
}

std::uint32_t UdpSocket::localAddress() const {
    return ntohl(localName(m_handle).sin_addr.s_addr);
}

std::uint16_t UdpSocket::localPort() const {
    return ntohs(localName(m_handle).sin_port);
}

} // namespace platform
