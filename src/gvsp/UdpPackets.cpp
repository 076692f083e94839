// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/UdpPackets.h"

#include "gvsp/StreamFilter.h"
#include "platform/Ipv4Address.h"

#include <algorithm>
#include <utility>

#include <linux/sock_diag.h>

namespace gvsp {

namespace {

using std::chrono::microseconds;
using Clock = std::chrono::steady_clock;

/// Batches of one receive(), so that it returns although packets come faster than they are read.
constexpr int mostBatches = 32;
constexpr microseconds longestGathering{2000};
/// Shorter spans measure the wake-up of this thread instead of the stream.
constexpr microseconds shortestGathering{50};
/// The part of the receive buffer that may fill meanwhile is one in so many.
constexpr std::int64_t partsOfBuffer = 4;
/// A program that was stopped for long measures nothing.
constexpr microseconds longestMeasured{1'000'000};

using MemoryInfo = std::array<std::uint32_t, SK_MEMINFO_VARS>;

/// All 0 when the kernel does not tell (before Linux 4.12).
MemoryInfo memoryInfo(int handle) {
    MemoryInfo info{};
    socklen_t size = sizeof info;
    getsockopt(handle, SOL_SOCKET, SO_MEMINFO, info.data(), &size);
    return info;
}

bool mayBeCut(const StreamDatagram& datagram) {
    return datagram.captured >= keptOfPayload && carriesPayload(datagram.data[4]);
}

} // namespace

UdpPackets::UdpPackets(std::shared_ptr<const platform::UdpSocket> socket, std::size_t largestPacket)
    : m_socket(std::move(socket)), m_port(m_socket->localPort()), m_largestPacket(largestPacket),
      m_buffer(batchSize * largestPacket) {
    for (std::size_t i = 0; i < batchSize; ++i) {
        m_places[i] = {m_buffer.data() + i * largestPacket, largestPacket};
        msghdr& message = m_messages[i].msg_hdr;
        message.msg_iov = &m_places[i];
        message.msg_iovlen = 1;
        message.msg_name = &m_senders[i];
    }
}

void UdpPackets::listen(const std::vector<StreamEndpoint>& endpoints) {
    m_headersOnly = !endpoints.empty() && endpoints.front().headersOnly;
    m_camera = endpoints.empty() ? 0 : endpoints.front().camera;
}

std::chrono::milliseconds UdpPackets::latency() const {
    return std::chrono::ceil<std::chrono::milliseconds>(longestGathering);
}

SourceCounts UdpPackets::counts() {
    const std::lock_guard lock(m_mutex);
    const std::uint32_t drops = memoryInfo(m_socket->handle())[SK_MEMINFO_DROPS];
    m_counts.dropped += drops - m_lastDrops;
    m_lastDrops = drops;
    return m_counts;
}

void UdpPackets::receive(microseconds wait, const Handler& handler) {
    const auto end = Clock::now() + wait;
    if (m_isEmpty) {
        if (m_poll.wait(m_socket->handle(), wait) == 0)
            return;
        gather(std::chrono::duration_cast<microseconds>(end - Clock::now()));
    }
    m_isEmpty = false;
    for (int i = 0; i < mostBatches && !m_isEmpty; ++i)
        m_isEmpty = readBatch(handler) < batchSize;
}

/// Sleeps while packets come, at most until they fill a part of the receive buffer. The kernel
/// tells how full it got, in its own units, which include its overhead. The time shrinks at once
/// and grows slowly, since a camera sends each frame as a burst.
void UdpPackets::gather(microseconds limit) {
    const auto begin = Clock::now();
    if (const microseconds time = std::min(limit, m_gathering); time >= shortestGathering)
        m_poll.wait(-1, time);
    const MemoryInfo info = memoryInfo(m_socket->handle());
    const std::int64_t filled = std::max(info[SK_MEMINFO_RMEM_ALLOC], 1U);
    const auto elapsed = std::clamp(std::chrono::duration_cast<microseconds>(Clock::now() - begin),
                                    shortestGathering, longestMeasured);
    const microseconds permitted = elapsed * info[SK_MEMINFO_RCVBUF] / (partsOfBuffer * filled);
    const microseconds grown = std::max(m_gathering, shortestGathering) * 9 / 8;
    m_gathering = std::min({longestGathering, permitted, grown});
}

std::size_t UdpPackets::readBatch(const Handler& handler) {
    for (mmsghdr& message : m_messages)
        message.msg_hdr.msg_namelen = sizeof(sockaddr_in);
    // MSG_TRUNC: a length that exceeds the buffer is told.
    const int count = recvmmsg(m_socket->handle(), m_messages.data(), batchSize,
                               MSG_DONTWAIT | MSG_TRUNC, nullptr);
    for (int i = 0; i < count; ++i)
        handOver(m_messages[static_cast<std::size_t>(i)], handler);
    return static_cast<std::size_t>(std::max(count, 0));
}

void UdpPackets::handOver(const mmsghdr& message, const Handler& handler) const {
    const auto* const sender = static_cast<const sockaddr*>(message.msg_hdr.msg_name);
    StreamDatagram datagram;
    datagram.sender = platform::addressNumber(sender);
    datagram.port = m_port;
    datagram.data = static_cast<const std::uint8_t*>(message.msg_hdr.msg_iov->iov_base);
    datagram.size = message.msg_len;
    datagram.captured = std::min(datagram.size, m_largestPacket);
    if (datagram.sender != m_camera || datagram.sender == 0)
        return;
    if (datagram.captured == datagram.size || (m_headersOnly && mayBeCut(datagram)))
        handler(datagram);
}

} // namespace gvsp
