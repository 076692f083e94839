// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketSource.h"
#include "gvsp/WakeablePoll.h"
#include "platform/UdpSocket.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>

namespace gvsp {

/// The packets of one stream, through a UDP socket: for users without the right to packet sockets.
/// Waits until several packets are there and reads them with one system call.
class UdpPackets : public PacketSource {
public:
    /// \p socket is bound, and read by nobody else. Hands datagrams of up to \p largestPacket bytes
    /// of UDP payload over whole. Ignores larger ones, except those that carry payload while the
    /// endpoint asks for headers only: these it cuts.
    UdpPackets(std::shared_ptr<const platform::UdpSocket> socket, std::size_t largestPacket);

    void receive(std::chrono::microseconds wait, const Handler& handler) override;
    void wake() override { m_poll.wake(); }
    /// Only the first endpoint counts, and of it the camera and headersOnly; address and port are
    /// the socket's. Without an endpoint, all packets are ignored.
    void listen(const std::vector<StreamEndpoint>& endpoints) override;
    /// Counts since the socket was made.
    std::chrono::milliseconds latency() const override;
    SourceCounts counts() override;

private:
    static constexpr std::size_t batchSize = 64;

    void gather(std::chrono::microseconds limit);
    /// Number of datagrams that one call read.
    std::size_t readBatch(const Handler& handler);
    void handOver(const mmsghdr& message, const Handler& handler) const;

    const std::shared_ptr<const platform::UdpSocket> m_socket;
    const std::uint16_t m_port;
    const std::size_t m_largestPacket;
    const WakeablePoll m_poll;
    std::atomic<std::uint32_t> m_camera{0};
    std::atomic<bool> m_headersOnly{false};

    /// All up to the mutex used by receive() only.
    std::vector<std::uint8_t> m_buffer;
    std::array<mmsghdr, batchSize> m_messages{};
    std::array<iovec, batchSize> m_places{};
    std::array<sockaddr_in, batchSize> m_senders{};
    bool m_isEmpty = true;
    /// How long packets are gathered before they are read.
    std::chrono::microseconds m_gathering{0};

    std::mutex m_mutex;
    /// Guarded by the mutex. The kernel's count has 32 bits.
    std::uint32_t m_lastDrops = 0;
    SourceCounts m_counts;
};

} // namespace gvsp
