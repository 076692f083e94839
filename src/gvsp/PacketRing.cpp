// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/PacketRing.h"

#include "gvsp/StreamFilter.h"

#include <algorithm>
#include <utility>

#include <arpa/inet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>

namespace gvsp {

namespace {

/// Blocks that are read before streams may request what is missing.
constexpr unsigned blocksPerRound = 32;
/// The kernel checks this value; blocks of TPACKET_V3 hold packets of any size.
constexpr unsigned frameSize = 2048;
/// Where the kernel puts the adapter of a packet.
constexpr std::size_t linkOffset = TPACKET_ALIGN(sizeof(tpacket3_hdr));
/// Distance of the packet whose lines of the cache, those of its headers, are read ahead. Measured:
/// 8 packets save more than 16.
constexpr unsigned prefetchPackets = 8;
constexpr std::size_t cacheLine = 64;
constexpr std::size_t headerLines = 3;
/// Pause after an error of the socket, so that repeated ones do not take the processor.
constexpr std::chrono::milliseconds errorPause{10};

template <typename Value> bool set(int handle, int option, const Value& value) {
    return setsockopt(handle, SOL_PACKET, option, &value, sizeof value) == 0;
}

bool bindTo(int handle, unsigned adapterIndex) {
    sockaddr_ll address{};
    address.sll_family = AF_PACKET;
    // Of this protocol, a packet socket hears what the adapter receives, not what it sends. The
    // kernel has taken VLAN tags off by then.
    address.sll_protocol = htons(ETH_P_IP);
    address.sll_ifindex = static_cast<int>(adapterIndex);
    return bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

void clearError(int handle) {
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(handle, SOL_SOCKET, SO_ERROR, &error, &size);
}

/// Reads ahead what the other processor has written: most of the time goes into waiting for it.
void prefetch(const std::uint8_t* packet) {
    for (std::size_t line = 0; line < headerLines; ++line)
        __builtin_prefetch(packet + line * cacheLine);
}

} // namespace

/// The ring holds the packets of a second at low rates, of half a second at 1 Gbit/s, and of 50 ms
/// at 10 Gbit/s: a busy host keeps the thread waiting for more than 100 ms. Measured on a busy
/// machine, 110 MB/s of headers in packets of 8000 bytes: after 1 ms, 471 wake-ups per second and
/// 101 us of processor time per MB; after 4 ms, 246 and 70 us. Blocks of 1 MiB after 10 ms cost
/// half as much, but a camera that keeps the frames of 40 ms then cannot send a packet for the
/// second time. Gathering saves wake-ups, too, and by then most packets have left the cache of the
/// processor that wrote them: copying from there costs most. Measured at 100 MB/s of whole frames:
/// 0.20 ms of processor time per MB instead of 0.29.
const PacketRing::Use PacketRing::receiving{streamFilter,
                                            1U << 18U,
                                            256,
                                            std::chrono::milliseconds(4),
                                            std::chrono::milliseconds(20),
                                            gige::readIpDatagram};

/// Nothing is requested, so that packets may gather for long. The headers of a packet take 144
/// bytes: the ring holds the packets of 2.5 seconds at any rate up to 1 Gbit/s and 1500 bytes, of
/// 0.27 at 10 Gbit/s.
const PacketRing::Use PacketRing::observing{observerFilter,
                                            1U << 18U,
                                            128,
                                            std::chrono::milliseconds(20),
                                            std::chrono::milliseconds(100),
                                            gige::readIpFragment};

std::unique_ptr<PacketRing> PacketRing::open(const std::string& adapter, const Use& use) {
    const unsigned index = if_nametoindex(adapter.c_str());
    if (index == 0)
        return nullptr;
    // Of protocol 0, the socket hears nothing until it is bound.
    std::unique_ptr<PacketRing> ring(
        new PacketRing(socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), use));
    return ring->prepare(index) ? std::move(ring) : nullptr;
}

bool PacketRing::requestRing() const {
    const int handle = m_socket.handle();
    tpacket_req3 ring{};
    ring.tp_block_size = m_use.blockSize;
    ring.tp_block_nr = m_use.blockCount;
    ring.tp_frame_size = frameSize;
    ring.tp_frame_nr = m_use.blockSize / frameSize * m_use.blockCount;
    ring.tp_retire_blk_tov = static_cast<unsigned>(m_use.tick.count());
    return set(handle, PACKET_VERSION, int{TPACKET_V3}) && set(handle, PACKET_RX_RING, ring);
}

bool PacketRing::prepare(unsigned adapterIndex) {
    const int handle = m_socket.handle();
    if (!m_socket.isOpen() || !m_poll.isOpen() || !requestRing())
        return false;
    void* const memory = mmap(nullptr, size(), PROT_READ | PROT_WRITE, MAP_SHARED, handle, 0);
    if (memory == MAP_FAILED)
        return false;
    m_blocks = static_cast<std::uint8_t*>(memory);
    m_adapterIndex = static_cast<int>(adapterIndex);
    return attach(m_use.filter({})) && bindTo(handle, adapterIndex);
}

PacketRing::~PacketRing() {
    if (m_blocks != nullptr)
        munmap(m_blocks, size());
}

bool PacketRing::attach(std::vector<sock_filter> program) const {
    if (program.size() > BPF_MAXINSNS)
        return false;
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return setsockopt(m_socket.handle(), SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter) == 0;
}

void PacketRing::listen(const std::vector<StreamEndpoint>& endpoints) {
    const std::vector<sock_filter> program = m_use.filter(endpoints);
    // Old and new filter must have room in net.core.optmem_max together, which is 20 KB before
    // Linux 6.7. The short one makes room, and stays if the new one is too large by itself.
    if (!attach(program) && attach(unselectiveFilter()))
        attach(program);
}

std::chrono::milliseconds PacketRing::latency() const {
    // The kernel hands over a block that has been the same at two ticks.
    return m_use.gathering + 2 * m_use.tick;
}

SourceCounts PacketRing::counts() {
    const std::lock_guard lock(m_mutex);
    tpacket_stats_v3 statistics{};
    socklen_t size = sizeof statistics;
    if (getsockopt(m_socket.handle(), SOL_PACKET, PACKET_STATISTICS, &statistics, &size) == 0) {
        m_counts.dropped += statistics.tp_drops;
        m_counts.freezes += statistics.tp_freeze_q_cnt;
    }
    return m_counts;
}

bool PacketRing::isAttached() const {
    sockaddr_ll address{};
    socklen_t size = sizeof address;
    return getsockname(m_socket.handle(), reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
           address.sll_ifindex == m_adapterIndex;
}

void PacketRing::receive(std::chrono::microseconds wait, const Handler& handler) {
    const bool gathers = m_isFlowing && wait > m_use.gathering;
    if (gathers)
        m_poll.wait(-1, m_use.gathering);
    unsigned count = readBlocks(handler);
    if (count == 0 && !gathers) {
        waitForBlock(wait);
        count = readBlocks(handler);
    }
    m_isFlowing = count > 0 && count < blocksPerRound;
}

void PacketRing::waitForBlock(std::chrono::microseconds wait) {
    if ((m_poll.wait(m_socket.handle(), wait) & POLLERR) != 0) {
        clearError(m_socket.handle());
        m_poll.wait(-1, std::min<std::chrono::microseconds>(wait, errorPause));
    }
}

unsigned PacketRing::readBlocks(const Handler& handler) {
    unsigned count = 0;
    for (; count < blocksPerRound; ++count) {
        std::uint8_t* const begin = m_blocks + std::size_t{m_next} * m_use.blockSize;
        auto& block = reinterpret_cast<tpacket_block_desc*>(begin)->hdr.bh1;
        if ((__atomic_load_n(&block.block_status, __ATOMIC_ACQUIRE) & TP_STATUS_USER) == 0)
            break;
        readBlock(block, begin, handler);
        __atomic_store_n(&block.block_status, TP_STATUS_KERNEL, __ATOMIC_RELEASE);
        m_next = (m_next + 1) % m_use.blockCount;
    }
    return count;
}

/// Packets of a VLAN on the adapter come, too, and are the VLAN's.
void PacketRing::readBlock(const tpacket_hdr_v1& block, const std::uint8_t* begin,
                           const Handler& handler) const {
    StreamDatagram datagram;
    const std::uint8_t* at = begin + block.offset_to_first_pkt;
    for (unsigned i = 0; i < block.num_pkts; ++i) {
        const auto& packet = *reinterpret_cast<const tpacket3_hdr*>(at);
        prefetch(at + std::size_t{prefetchPackets} * packet.tp_next_offset);
        const auto& link = *reinterpret_cast<const sockaddr_ll*>(at + linkOffset);
        const std::uint8_t* const ip = at + packet.tp_net;
        if (link.sll_ifindex == m_adapterIndex &&
            m_use.read(ip, packet.tp_snaplen, packet.tp_len, datagram)) {
            datagram.arrival =
                std::chrono::seconds(packet.tp_sec) + std::chrono::nanoseconds(packet.tp_nsec);
            datagram.packet = ip;
            datagram.packetSize = packet.tp_len;
            datagram.link = &link;
            handler(datagram);
        }
        at += packet.tp_next_offset;
    }
}

} // namespace gvsp
