// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/DatagramSocket.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orv::aravis {

DatagramSocket::DatagramSocket() : m_handle(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

DatagramSocket::~DatagramSocket() {
    if (m_handle >= 0)
        close(m_handle);
}

bool DatagramSocket::connectTo(std::uint32_t address, std::uint16_t port) const {
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_addr.s_addr = htonl(address);
    peer.sin_port = htons(port);
    return connect(m_handle, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0;
}

std::uint32_t DatagramSocket::localAddress() const {
    sockaddr_in own{};
    socklen_t size = sizeof own;
    if (getsockname(m_handle, reinterpret_cast<sockaddr*>(&own), &size) != 0)
        return 0;
    return ntohl(own.sin_addr.s_addr);
}

} // namespace orv::aravis
