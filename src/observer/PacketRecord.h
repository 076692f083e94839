// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketSource.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace observer {

/// Keeps the packets of the last minute as blocks of a capture file (pcapng, Enhanced Packet
/// Block), see CaptureFile.h: of image data the headers, of other packets up to snapLength bytes.
/// Not thread-safe.
class PacketRecord {
public:
    /// Blocks one after the other, in the order of their arrival.
    using Blocks = std::vector<std::uint8_t>;
    using Parts = std::vector<std::shared_ptr<const Blocks>>;

    static constexpr std::chrono::seconds age{60};
    /// Bytes of a packet at most, without the link's header.
    static constexpr std::size_t snapLength = 1024;

    /// The packets are those of the capture file's adapter with this number. Takes at most
    /// \p mostBytes, and forgets older packets before their time where they take more.
    PacketRecord(std::uint32_t adapter, std::size_t mostBytes)
        : m_adapter(adapter), m_mostParts(mostBytes / partSize) {}

    /// Ignores packets of sources that do not have them, see gvsp::StreamDatagram::packet.
    void add(const gvsp::StreamDatagram& datagram);
    /// What is kept. It does not change any more, so that another thread may read it.
    Parts packets();
    /// The packets after this time, since 1970, are all kept; 0 while none was forgotten.
    std::chrono::nanoseconds completeSince() const { return m_completeSince; }

private:
    struct Part {
        std::shared_ptr<Blocks> blocks;
        std::chrono::nanoseconds newest{0};
    };

    static constexpr std::size_t partSize = std::size_t{1} << 20U;

    /// The part that has room for \p size more bytes.
    Part& partFor(std::size_t size, std::chrono::nanoseconds now);

    const std::uint32_t m_adapter;
    const std::size_t m_mostParts;
    std::deque<Part> m_parts;
    /// The last part takes no more packets.
    bool m_isClosed = true;
    std::chrono::nanoseconds m_completeSince{0};
};

} // namespace observer
