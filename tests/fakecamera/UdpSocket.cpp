// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/UdpSocket.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace fakecamera {

namespace {

void check(int result, const std::string& what) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

} // namespace

std::uint32_t parseAddress(const std::string& text) {
    in_addr address{};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1) {
        throw std::runtime_error("not an IPv4 address: " + text);
    }
    return ntohl(address.s_addr);
}

sockaddr_in socketAddress(std::uint32_t address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = htonl(address);
    result.sin_port = htons(port);
    return result;
}

UdpSocket::UdpSocket() : m_descriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    check(m_descriptor, "socket");
}

UdpSocket::~UdpSocket() {
    close(m_descriptor);
}

void UdpSocket::bind(const sockaddr_in& address) {
    check(::bind(m_descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address),
          "bind");
}

void UdpSocket::set(int level, int option, int value) {
    check(setsockopt(m_descriptor, level, option, &value, sizeof value), "setsockopt");
}

} // namespace fakecamera
