// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <netinet/in.h>

#include <cstdint>
#include <string>

namespace fakecamera {

/// The IPv4 address that a text like "127.0.0.2" names, in host order. Throws std::runtime_error.
std::uint32_t parseAddress(const std::string& text);

sockaddr_in socketAddress(std::uint32_t address, std::uint16_t port);

/// An open UDP socket, closed with the object. Throws std::system_error where it cannot be had.
class UdpSocket {
public:
    UdpSocket();
    ~UdpSocket();
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    int descriptor() const { return m_descriptor; }
    void bind(const sockaddr_in& address);
    /// Sets an integer socket option.
    void set(int level, int option, int value);

private:
    int m_descriptor;
};

} // namespace fakecamera
