// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/Gvsp.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace observer {

/// Learns the sizes of a stream's frames and packets, which only the program that controls the
/// camera knows, from the packets that pass. Not thread-safe.
class StreamSizes {
public:
    struct Sizes {
        /// Bytes of a frame.
        std::size_t payload = 0;
        /// Bytes of a packet with its IP and UDP headers.
        std::size_t packetSize = 0;

        bool operator==(const Sizes& other) const {
            return payload == other.payload && packetSize == other.packetSize;
        }
    };

    /// Returns sizes when \p packet is the trailer of a frame that told them.
    std::optional<Sizes> note(const gvsp::Packet& packet);

private:
    std::optional<Sizes> sizesOf(const gvsp::Packet& trailer) const;
    std::optional<Sizes> sizesOfImage(const gvsp::Packet& trailer) const;

    /// The frame whose leader came last; 0 before the first.
    std::uint64_t m_block = 0;
    std::optional<gvsp::Image> m_image;
    /// Bytes of its first data packet, and of the data packet with the highest number; 0 before.
    std::size_t m_firstSize = 0;
    std::size_t m_lastSize = 0;
    std::uint32_t m_lastNumber = 0;
    /// Largest of all packets.
    std::size_t m_fullSize = 0;
};

} // namespace observer
