// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/IpDatagram.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

struct sockaddr_ll;

namespace gvsp {

/// One UDP datagram of a stream as a source hands it over, or a fragment of one where the source
/// was told to take these. Valid during the call only; shorter than on the wire only when the
/// endpoint asks for headers only.
struct StreamDatagram : gige::UdpDatagram {
    /// When the kernel received the packet, since 1970; 0 where the source does not tell.
    std::chrono::nanoseconds arrival{0};
    /// The IPv4 packet, up to data + captured; null where the source does not have it.
    const std::uint8_t* packet = nullptr;
    /// Bytes of the packet on the wire.
    std::uint32_t packetSize = 0;
    /// How the adapter received the packet, and from whom; null where packet is.
    const sockaddr_ll* link = nullptr;
};

/// A stream that a source listens to. Addresses in host byte order.
struct StreamEndpoint {
    std::uint32_t camera = 0;
    /// Destination address of the packets.
    std::uint32_t host = 0;
    /// Destination port of the packets.
    std::uint16_t port = 0;
    /// Permits the source to cut the image data off packets that carry payload, see
    /// StreamFilter.h. It may hand over more.
    bool headersOnly = false;
};

/// Packets that were lost before they reached this program.
struct SourceCounts {
    /// Packets for which there was no room.
    std::uint64_t dropped = 0;
    /// How often a full ring stopped taking packets; 0 for a UDP socket.
    std::uint64_t freezes = 0;
    /// How often the adapter was removed, and how often its packets came again after that; see
    /// AdapterRing.
    std::uint64_t removals = 0;
    std::uint64_t returns = 0;
};

/// Where the packets of streams come from.
class PacketSource {
public:
    using Handler = std::function<void(const StreamDatagram&)>;

    PacketSource() = default;
    virtual ~PacketSource() = default;
    PacketSource(const PacketSource&) = delete;
    PacketSource& operator=(const PacketSource&) = delete;

    /// Waits up to \p wait for packets and hands each to \p handler. Returns early after wake(),
    /// and after a limited number of packets. Call on one thread only.
    virtual void receive(std::chrono::microseconds wait, const Handler& handler) = 0;
    /// Ends the receive() that waits, or else the next one. Any thread.
    virtual void wake() = 0;
    /// Replaces the endpoints that are listened to; at first there are none. A packet to an
    /// endpoint that stays is not lost. Packets to an endpoint that was removed may still come.
    /// Any thread.
    virtual void listen(const std::vector<StreamEndpoint>& endpoints) = 0;
    /// Longest time from the arrival of a packet until receive() finds it, on a host that is not
    /// busy. Any thread.
    virtual std::chrono::milliseconds latency() const = 0;
    /// Counts since the source was made. Any thread.
    virtual SourceCounts counts() = 0;
};

} // namespace gvsp
