// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

namespace platform {

/// Bytes of the receive buffer that the stream of a GigE camera asks for: a quarter of a second of
/// a Gigabit link.
constexpr int streamReceiveBuffer = 32 * 1024 * 1024;

/// An IPv4 socket for datagrams, closed with the object. Addresses are in host byte order. An
/// operation that fails returns false and sets errno. Reentrant.
class UdpSocket {
public:
    UdpSocket();
    ~UdpSocket();
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    /// The operating system's descriptor; negative when it gave none.
    int handle() const { return m_handle; }
    /// Receives at this address; port 0 takes any free port.
    bool bindTo(std::uint32_t address, std::uint16_t port) const;
    /// Sends to and receives from this address only, and takes the route to it.
    bool connectTo(std::uint32_t address, std::uint16_t port) const;
    /// Sets an option of type int, such as SOL_SOCKET, SO_RCVBUF.
    bool set(int level, int option, int value) const;
    /// Address and port of this side; 0 before bindTo() or connectTo().
    std::uint32_t localAddress() const;
    std::uint16_t localPort() const;

private:
    const int m_handle;
};

} // namespace platform
