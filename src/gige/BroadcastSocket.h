// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/Descriptor.h"
#include "platform/NetworkAdapters.h"
#include "platform/UdpSocket.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace gige {

/// Whose answers a broadcast receives: those of cameras to which this host has a route, or also
/// those of cameras with an address of any other subnet.
enum class Reach { OwnSubnets, AllSubnets };

/// Sends commands to all cameras on the network of one adapter and receives their answers.
///
/// A camera of another subnet answers by broadcast, which a second socket receives. Where the
/// kernel checks the way back to a sender (reverse-path filter), it discards such an answer; a
/// packet socket still gets it, and is used where this process may open one (CAP_NET_RAW). An
/// answer may come twice then. Bound to one thread.
class BroadcastSocket {
public:
    BroadcastSocket(const platform::NetworkAdapter& adapter, Reach reach);

    /// Sends to everybody at the control port; false when the adapter cannot.
    bool send(const std::vector<std::uint8_t>& packet) const;
    /// The next answer that has come; nothing when there is none. Does not wait.
    std::optional<std::vector<std::uint8_t>> receive() const;
    /// Waits until an answer comes, at most \p limit.
    void wait(std::chrono::milliseconds limit) const;
    /// The adapter's address through which it sends.
    const platform::NetworkAdapter& adapter() const { return m_adapter; }
    /// The descriptors that become readable when an answer comes.
    std::vector<int> handles() const;

private:
    bool bindAll(Reach reach);
    bool openPacketSocket();

    const platform::NetworkAdapter m_adapter;
    const platform::UdpSocket m_socket;
    std::unique_ptr<platform::UdpSocket> m_broadcasts;
    std::unique_ptr<platform::Descriptor> m_packets;
    bool m_isBound = false;
};

/// Waits until one of the descriptors is readable, at most \p limit. Reentrant.
void waitForAny(const std::vector<int>& handles, std::chrono::milliseconds limit);

} // namespace gige
