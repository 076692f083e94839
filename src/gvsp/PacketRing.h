// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketSource.h"
#include "gvsp/WakeablePoll.h"
#include "platform/Descriptor.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <linux/filter.h>
#include <linux/if_packet.h>

namespace gvsp {

/// All streams of an adapter, through a ring of blocks in memory that the kernel shares with this
/// program (TPACKET_V3): no system call and no copy per packet. The kernel filters the packets by
/// the endpoints. They pass the host's firewall, and arrive at UDP sockets as well. The ring is
/// shared by the adapter's streams, and so are the counts.
class PacketRing : public PacketSource {
public:
    /// What a ring is used for.
    struct Use {
        /// The kernel's filter for the endpoints, see StreamFilter.h.
        std::vector<sock_filter> (*filter)(std::vector<StreamEndpoint> endpoints);
        unsigned blockSize;
        unsigned blockCount;
        /// A block is handed over when it is full, or at the second tick of this period.
        std::chrono::milliseconds tick;
        /// While packets come, they gather in the ring for this long, unless receive() is to wait
        /// for less.
        std::chrono::milliseconds gathering;
        /// Reads a packet: readIpDatagram, or readIpFragment to take fragments, too.
        bool (*read)(const std::uint8_t* packet, std::size_t captured, std::size_t size,
                     gige::UdpDatagram& datagram);
    };
    /// Frames are put together, and missing packets requested.
    static const Use receiving;
    /// Streams of others are watched, from headers.
    static const Use observing;

    /// Null when the system refuses: no right to packet sockets (CAP_NET_RAW), no memory, no such
    /// adapter.
    static std::unique_ptr<PacketRing> open(const std::string& adapter, const Use& use = receiving);
    ~PacketRing() override;

    /// Handles one round of the ring at most. While the adapter is down, nothing comes; after it
    /// was removed, nothing comes any more.
    void receive(std::chrono::microseconds wait, const Handler& handler) override;
    void wake() override { m_poll.wake(); }
    /// When the kernel has no room for the filter, the ring also hands over UDP datagrams of others
    /// and ignores headersOnly.
    void listen(const std::vector<StreamEndpoint>& endpoints) override;
    std::chrono::milliseconds latency() const override;
    SourceCounts counts() override;
    /// False after the adapter was removed, for ever.
    bool isAttached() const;

private:
    PacketRing(int handle, const Use& use) : m_use(use), m_socket(handle) {}
    std::size_t size() const { return std::size_t{m_use.blockSize} * m_use.blockCount; }
    bool prepare(unsigned adapterIndex);
    bool requestRing() const;
    bool attach(std::vector<sock_filter> program) const;
    /// Ends early when a block is full, or after an error of the socket.
    void waitForBlock(std::chrono::microseconds wait);
    /// Number of the blocks that were full.
    unsigned readBlocks(const Handler& handler);
    void readBlock(const tpacket_hdr_v1& block, const std::uint8_t* begin,
                   const Handler& handler) const;

    const Use m_use;
    const platform::Descriptor m_socket;
    const WakeablePoll m_poll;
    std::uint8_t* m_blocks = nullptr;
    int m_adapterIndex = 0;
    /// Block that the kernel fills next.
    unsigned m_next = 0;
    /// The last receive() has found packets and left none. Used by receive() only.
    bool m_isFlowing = false;
    std::mutex m_mutex;
    /// Guarded by the mutex: the kernel forgets its counts when they are read.
    SourceCounts m_counts;
};

} // namespace gvsp
