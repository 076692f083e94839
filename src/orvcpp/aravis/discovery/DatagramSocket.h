// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

namespace orv::aravis {

/// An IPv4 socket for datagrams, closed with the object. Addresses are in host byte order.
class DatagramSocket {
public:
    DatagramSocket();
    ~DatagramSocket();
    DatagramSocket(const DatagramSocket&) = delete;
    DatagramSocket& operator=(const DatagramSocket&) = delete;

    /// File descriptor; negative when it could not be made.
    int handle() const { return m_handle; }
    /// Sends to and receives from this address only, and takes the route to it.
    bool connectTo(std::uint32_t address, std::uint16_t port) const;
    /// Address of this side; 0 before connectTo().
    std::uint32_t localAddress() const;

private:
    const int m_handle;
};

} // namespace orv::aravis
